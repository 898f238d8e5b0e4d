// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricView.h"

#include <QScrollBar>

LyricView::LyricView()
{
    setModel(&m_lines);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setSpacing(1);
}

void LyricView::setLyric(const QString &text)
{
    const int place = verticalScrollBar()->value();
    m_text = text;
    QStringList lines = text.split(u'\n');
    lines.removeLast(); // the empty one after the last line feed
    m_lines.setStringList(lines);
    verticalScrollBar()->setValue(place);
}

void LyricView::highlight(std::optional<QVTextRange> range)
{
    const qsizetype line =
        range ? QStringView(m_text).first(qsizetype(range->location)).count(u'\n') : qsizetype(-1);
    setCurrentIndex(m_lines.index(int(line)));
}
