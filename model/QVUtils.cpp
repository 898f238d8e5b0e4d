// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVUtils.h>

#include "TagScanner.h"
#include "TimeText.h"

#include <stdexcept>

using namespace QVSongLrcPrivate;

qint64 QVUtils::getTimeInterval(const QString &timeTag)
{
    if (timeTag.size() < 2)
        throw std::out_of_range("QVUtils::getTimeInterval: a time tag has at least two characters");
    return TimeText::fromTag(timeTag);
}

QString QVUtils::getTimeIntervalMMSSMSStr(qint64 milliseconds)
{
    const QString tag = getTimeIntervalPeerStr(milliseconds);
    return tag.sliced(1, tag.size() - 2);
}

QString QVUtils::getTimeIntervalPeerStr(qint64 milliseconds)
{
    char16_t tag[TimeText::MaxTagLength];
    const char16_t *const end = TimeText::writeTag(tag, milliseconds);
    return QStringView(tag, end).toString();
}

bool QVUtils::isPropertyString(const QString &text)
{
    return TagScanner::propertyTag(text).has_value();
}

bool QVUtils::isTimeString(const QString &text)
{
    return TagScanner::timeTag(text).has_value();
}
