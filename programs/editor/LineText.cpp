// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineText.h"

#include <QVSongLrc/QVLyricImport.h>
#include <QVSongLrc/QVUtils.h>

QString LineText::exact(const QVSongLine &line)
{
    if (line.isProperty())
        return line.displayText();
    QString text;
    for (const qint64 time : *line.aryTimes()) {
        text += QVUtils::getTimeIntervalPeerStr(time);
        if (const qint64 thousandths = time % 10)
            text.insert(text.size() - 1, QString::number(thousandths));
    }
    return text + line.lineText();
}

QVSongLineList LineText::reread(const QVSongLine &line)
{
    const auto lines = QVLyricImport(exact(line)).lines();
    return lines->isEmpty() ? QVSongLineList{QVSongLine::emptyLine()} : *lines;
}

std::optional<QVTimeList> LineText::typedTimes(const QString &typed)
{
    QString text = typed.simplified();
    if (text.isEmpty())
        return QVTimeList();
    if (!text.contains(u'[') && !text.contains(u']'))
        text = u'[' + text + u']';
    const auto lines = QVLyricImport(text).lines();
    const QVSongLine &line = *lines->first();
    const bool hasWords = line.isProperty() || !line.lineText().isEmpty();
    return hasWords ? std::nullopt : std::optional(*line.aryTimes());
}
