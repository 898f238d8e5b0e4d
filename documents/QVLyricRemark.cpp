// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricRemark.h>

QString QVLyricRemark::name(Kind kind)
{
    switch (kind) {
    case Kind::LineEnds:
        return QStringLiteral("line-ends");
    case Kind::Property:
        return QStringLiteral("property");
    case Kind::TimeForm:
        return QStringLiteral("time-form");
    case Kind::Hundredths:
        return QStringLiteral("hundredths");
    case Kind::WordTime:
        return QStringLiteral("word-time");
    case Kind::NoTime:
        return QStringLiteral("no-time");
    case Kind::Offset:
        return QStringLiteral("offset");
    case Kind::Character:
        return QStringLiteral("character");
    }
    return {};
}
