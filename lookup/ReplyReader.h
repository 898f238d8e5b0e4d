// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricError.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>
#include <stop_token>

namespace QVSongLrcPrivate {

/// The result of a request. Searches leave the lyric unused, detail requests the list and the index.
struct LookupResult
{
    std::optional<QVLyricError> error;
    QList<QJsonObject> results;
    qint64 bestIndex = 0;
    QString lyric;
};

/// Reads the service's replies. Stateless; callable from any thread.
namespace ReplyReader {

std::optional<QJsonObject> jsonObject(const QByteArray &body);

QList<QJsonObject> usableCandidates(const QJsonArray &list);

LookupResult readSearch(const QByteArray &body, const QString &query, const std::stop_token &stop);
LookupResult readDetail(const QByteArray &body, const QString &query, const std::stop_token &stop);

} // namespace ReplyReader

} // namespace QVSongLrcPrivate
