// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricRemark.h>

#include <QList>

namespace QVSongLrcPrivate {

/// Collects the remarks on a text.
class RemarkList
{
public:
    explicit RemarkList(QStringView text);

    /// Adds a remark on the part \p place of the text. Parts are given in the order of the text.
    void add(QVLyricRemark::Kind kind, QStringView place, const QString &message);

    /// Adds the remarks on odd characters: control characters other than tabs and line ends, lone surrogates and byte
    /// order marks; one a run of them. Call it before any add().
    void addOddCharacters();

    /// The remarks in the order of the text, with their lines and columns. The list is then empty.
    QList<QVLyricRemark> take();

private:
    void addOddCharacters(qsizetype from, qsizetype to);

    const QStringView m_text;
    QList<QVLyricRemark> m_remarks;
    qsizetype m_oddCharacters = 0; // remarks on them, which come first
};

} // namespace QVSongLrcPrivate
