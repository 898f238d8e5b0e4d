// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricImport.h>

#include "ImportReader.h"

struct QVLyricImport::Private
{
    explicit Private(const QString &text)
    {
        QVSongLrcPrivate::ImportReader reader(text);
        lines = reader.takeLines();
        remarks = reader.takeRemarks();
    }

    std::shared_ptr<QVSongLineList> lines;
    QList<QVLyricRemark> remarks;
};

QVLyricImport::QVLyricImport(const QString &text)
    : d(std::make_unique<Private>(text))
{
}

QVLyricImport::~QVLyricImport() = default;

std::shared_ptr<QVSongLineList> QVLyricImport::lines() const
{
    return d->lines;
}

const QList<QVLyricRemark> &QVLyricImport::remarks() const
{
    return d->remarks;
}
