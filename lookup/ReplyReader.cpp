// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ReplyReader.h"

#include "BestMatch.h"
#include "LookupProtocol.h"
#include "SafeModel.h"

#include <QVSongLrc/QVSongLrcConstants.h>

#include <QJsonDocument>

namespace QVSongLrcPrivate {
namespace {

constexpr QStringView EmptyResponse = u"empty response";

LookupResult failure(qint64 code, const QString &description)
{
    return {QVLyricError{QVLyricError::ServiceDomain, code, description}, {}, 0, {}};
}

/// The error that \p reply reports, if there is one.
std::optional<LookupResult> reportedFailure(const QJsonObject &reply)
{
    const qint64 code = numberForKeySafeModel(reply, LookupProtocol::Code).value_or(LookupProtocol::Success);
    if (code == LookupProtocol::Success)
        return std::nullopt;
    const QString message = stringForKeySafeModel(reply, LookupProtocol::Message);
    return failure(code, message.isNull() ? QStringLiteral("") : message);
}

} // namespace

std::optional<QJsonObject> ReplyReader::jsonObject(const QByteArray &body)
{
    if (!body.isValidUtf8())
        return std::nullopt;
    const QByteArray text = QString::fromUtf8(body).trimmed().toUtf8();
    const QJsonDocument document = QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QList<QJsonObject> ReplyReader::usableCandidates(const QJsonArray &list)
{
    QList<QJsonObject> usable;
    for (const QJsonValue &value : list) {
        const QJsonObject candidate = value.toObject(); // empty when the value is not an object
        if (!stringForKeySafeModel(candidate, Key_Lyric_Trackname).isEmpty()
            && !stringForKeySafeModel(candidate, Key_Lyric_Artist).isEmpty())
            usable.append(candidate);
    }
    return usable;
}

LookupResult ReplyReader::readSearch(const QByteArray &body, const QString &query,
                                     const std::stop_token &stop)
{
    const std::optional<QJsonObject> reply = jsonObject(body);
    if (!reply)
        return failure(QVLyricError::SearchFailed, EmptyResponse.toString());
    if (const auto reported = reportedFailure(*reply))
        return *reported;
    QList<QJsonObject> candidates = usableCandidates(reply->value(LookupProtocol::Results).toArray());
    if (candidates.isEmpty())
        return failure(QVLyricError::NothingFound, QStringLiteral("没有结果")); // never translated
    const qint64 best = bestMatch(candidates, query, stop);
    return {std::nullopt, std::move(candidates), best, {}};
}

LookupResult ReplyReader::readDetail(const QByteArray &body, const QString &, const std::stop_token &)
{
    const std::optional<QJsonObject> reply = jsonObject(body);
    if (!reply)
        return failure(QVLyricError::DetailUnreadable, EmptyResponse.toString());
    if (const auto reported = reportedFailure(*reply))
        return *reported;
    // A reply without a lyric is a success on purpose.
    const QJsonObject result = reply->value(LookupProtocol::Result).toObject();
    return {std::nullopt, {}, 0, stringForKeySafeModel(result, Key_Lyric_Lyric)};
}

} // namespace QVSongLrcPrivate
