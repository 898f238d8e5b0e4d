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
    /// Refers to \p text, which must not get shorter before take().
    explicit RemarkList(const QString &text);

    /// Adds a remark on the part \p place of the text. Parts are given in the order of the text.
    void add(QVLyricRemark::Kind kind, QStringView place, const QString &message);

    /// Adds remarks on the odd characters from index \p from up to \p to: control characters other than tabs and line
    /// ends, lone surrogates and byte order marks; one remark a run. Call it for the parts of the text in order,
    /// before any add().
    void addOddCharacters(qsizetype from, qsizetype to);

    /// The remarks in the order of the text, with their lines and columns. The list is then empty.
    QList<QVLyricRemark> take();

private:
    const QString &m_text;
    QList<QVLyricRemark> m_remarks;
    qsizetype m_oddCharacters = 0; // remarks on them, which come first
};

} // namespace QVSongLrcPrivate
