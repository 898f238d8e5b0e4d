// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "LyricView.h"

#include <QVSongLrc/QVPreviewSong.h>

#include <vector>

/// The song as it plays, with the current line highlighted. Times are in ms.
class PreviewPane : public LyricView
{
    Q_OBJECT

public:
    PreviewPane();

    /// Shows the preview of a song with these lines.
    void setSong(const QVSongLineList &lines);
    void setHasTags(bool hasTags);
    void setNow(qint64 now);

    /// The time of the last line; 0 if there is none.
    qint64 length() const;

Q_SIGNALS:
    /// The user chose the line at this time.
    void lineChosen(qint64 time);

private:
    void showText();

    QVPreviewSong m_song;
    std::vector<qint64> m_times; // of its lines
    bool m_hasTags = true;
    qint64 m_now = 0;
    qsizetype m_current = -1; // the line highlighted
};
