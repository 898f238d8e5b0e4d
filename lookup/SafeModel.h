// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "model/Saturating.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMetaType>
#include <QVariant>

#include <optional>

namespace QVSongLrcPrivate {

// What a dictionary holds under a key when it is of the kind asked for, else nothing. None of these fails.

/// Absent, not empty, when there is no string.
inline QString stringForKeySafeModel(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return QString();
    const QString text = value.toString();
    return text.isNull() ? QStringLiteral("") : text;
}

/// Cut toward zero, and the nearest limit where 64 bits do not hold it.
inline std::optional<qint64> numberForKeySafeModel(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        return std::nullopt;
    const QVariant number = value.toVariant(); // tells whole numbers, which are exact, from others
    return number.metaType() == QMetaType::fromType<double>() ? Saturating::fromDouble(number.toDouble())
                                                              : number.toLongLong();
}

inline std::optional<QJsonArray> arrayForKeySafeModel(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
}

inline std::optional<QJsonObject> dictionaryForKeySafeModel(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    return value.isObject() ? std::optional(value.toObject()) : std::nullopt;
}

} // namespace QVSongLrcPrivate
