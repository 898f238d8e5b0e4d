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
struct LyricAnswer
{
    std::optional<QVLyricError> error;
    QList<QJsonObject> results;
    qint64 bestIndex = 0;
    QString lyric;
};

/// Reads the service's replies. Stateless; callable from any thread.
namespace AnswerReader {

std::optional<QJsonObject> jsonObject(const QByteArray &body);

QList<QJsonObject> usableCandidates(const QJsonArray &list);

/// The index in \p candidates of the one that is most like \p query; 0 when all of them are too different, or
/// there are none. After a stop request it returns soon, with any index.
qsizetype bestMatch(const QList<QJsonObject> &candidates, const QString &query,
                    const std::stop_token &stop = {});

LyricAnswer readSearch(const QByteArray &body, const QString &query, const std::stop_token &stop);
LyricAnswer readDetail(const QByteArray &body, const QString &query, const std::stop_token &stop);

} // namespace AnswerReader

} // namespace QVSongLrcPrivate
