// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "model/Saturating.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QMetaType>
#include <QVariant>

#include <optional>

namespace QVSongLrcPrivate {

// Each returns the value under a key when it has the right type, else nothing.

/// Absent when there is no string; never absent when there is one.
inline QString stringForKeySafeModel(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return QString();
    const QString text = value.toString();
    return text.isNull() ? QStringLiteral("") : text;
}

/// Truncated toward zero, and limited to 64 bits.
inline std::optional<qint64> numberForKeySafeModel(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        return std::nullopt;
    const QVariant number = value.toVariant(); // whole numbers are exact in it
    return number.metaType() == QMetaType::fromType<double>() ? Saturating::fromDouble(number.toDouble())
                                                              : number.toLongLong();
}

} // namespace QVSongLrcPrivate
