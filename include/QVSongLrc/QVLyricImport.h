// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricRemark.h>
#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QList>
#include <QString>

#include <memory>

/// Reads lyric files as they are found in the world: into lines that say the same words at the same times, with a
/// remark for each place that the documents would read otherwise.
///
/// The documents (QVEditSong, QVPreviewSong) read one strict form of LRC, and drop or misread much of what real files
/// hold. A program that writes a file back reads it by an import, and hands the lines to QVEditSong::setAryLines().
/// Importing what was written gives equal lines, with times cut to hundredths of a second.
///
/// Reading takes time and memory linear in the text. Use an import and its lines from one thread at a time.
class QVSONGLRC_CORE_EXPORT QVLyricImport
{
public:
    /// Reads \p text. Every text can be read; an absent one counts as empty. See docs/lrc-format.md for the rules.
    explicit QVLyricImport(const QString &text);
    ~QVLyricImport();

    /// The lines, as for QVEditSong::setAryLines(); never null. It is the list itself, not a copy. Blank lines between
    /// others are kept as lines without times, with the text "". Ranges are not set; QVEditSong::updateSongText() sets
    /// them.
    std::shared_ptr<QVSongLineList> lines() const;

    /// The remarks, in the order of their places in the text.
    const QList<QVLyricRemark> &remarks() const;

private:
    Q_DISABLE_COPY(QVLyricImport)
    struct Private;
    const std::unique_ptr<Private> d;
};
