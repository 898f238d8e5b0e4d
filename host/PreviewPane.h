// SPDX-License-Identifier: MIT
#pragma once

#include "LyricView.h"

#include <QVSongLrc/QVPreviewSong.h>

/// The song as it plays, the line highlighted that is sung now.
class PreviewPane : public LyricView
{
    Q_OBJECT

public:
    using LyricView::LyricView;

    /// Shows what \p songText plays like.
    void setSong(const QString &songText);

    void setHasTags(bool hasTags);
    void setNow(qint64 milliseconds);

    /// The time of the last line, in ms; 0 without lines.
    qint64 length() const;

private:
    void showText();
    void highlightNow();

    QVPreviewSong m_song;
    bool m_hasTags = true;
    qint64 m_now = 0;
    qsizetype m_current = -1;
};
