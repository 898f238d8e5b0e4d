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

/// What a reply of the service comes to. A value; of a search the lyric is unused, of a detail request the
/// list.
struct LyricAnswer
{
    std::optional<QVLyricError> error;
    QList<QJsonObject> results;
    qint64 bestIndex = 0;
    QString lyric;
};

/// Reads the service's replies. Nothing here has state, so replies are read on any thread.
namespace AnswerReader {

/// The description of a request whose reply is no JSON object.
inline constexpr QStringView EmptyResponse(u"empty response");

std::optional<QJsonObject> jsonObject(const QByteArray &body);

QList<QJsonObject> usableCandidates(const QJsonArray &list);

/// The index in \p candidates of the one most like \p query; 0 when none is, or there are none. Scores that
/// no longer matter are not worked out to the end. A stop asked for makes the answer meaningless and soon.
qsizetype bestMatch(const QList<QJsonObject> &candidates, const QString &query,
                    const std::stop_token &stop = {});

LyricAnswer readSearch(const QByteArray &body, const QString &query, const std::stop_token &stop);
LyricAnswer readDetail(const QByteArray &body);

} // namespace AnswerReader

} // namespace QVSongLrcPrivate
