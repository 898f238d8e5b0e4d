// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "AnswerReader.h"

#include "EditDistance.h"
#include "Likeness.h"
#include "LookupProtocol.h"
#include "SafeModel.h"

#include <QVSongLrc/QVSongLrcConstants.h>

#include <QJsonDocument>

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

const QString EmptyResponse = QStringLiteral("empty response");

LyricAnswer failure(qint64 code, const QString &description)
{
    return {QVLyricError{QVLyricError::ServiceDomain, code, description}, {}, 0, {}};
}

/// The error that \p reply reports, if there is one.
std::optional<LyricAnswer> reportedFailure(const QJsonObject &reply)
{
    const qint64 code = numberForKeySafeModel(reply, LookupProtocol::Code).value_or(LookupProtocol::Success);
    if (code == LookupProtocol::Success)
        return std::nullopt;
    const QString message = stringForKeySafeModel(reply, LookupProtocol::Message);
    return failure(code, message.isNull() ? QStringLiteral("") : message);
}

/// The greatest distance at which a text of \p length code units scores above \p score; negative when there is
/// none.
qint64 distanceToBeat(float score, qint64 length)
{
    // Scores are floats, so this is only a guess.
    qint64 distance = qint64((100.0 - double(score)) * double(length) / 100.0);
    while (likenessAtDistance(distance + 1, length) > score)
        ++distance;
    while (distance >= 0 && !(likenessAtDistance(distance, length) > score))
        --distance;
    return distance;
}

} // namespace

std::optional<QJsonObject> AnswerReader::jsonObject(const QByteArray &body)
{
    if (!body.isValidUtf8())
        return std::nullopt;
    const QByteArray text = QString::fromUtf8(body).trimmed().toUtf8();
    const QJsonDocument document = QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QList<QJsonObject> AnswerReader::usableCandidates(const QJsonArray &list)
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

qsizetype AnswerReader::bestMatch(const QList<QJsonObject> &candidates, const QString &query,
                                  const std::stop_token &stop)
{
    qsizetype best = 0;
    float bestScore = -1; // candidates that score less are not chosen
    for (qsizetype index = 0; index < candidates.size() && !stop.stop_requested(); ++index) {
        const QJsonObject &candidate = candidates[index];
        const QString text = stringForKeySafeModel(candidate, Key_Lyric_Trackname)
            + stringForKeySafeModel(candidate, Key_Lyric_Artist);
        float score = float(text.size() + query.size()); // as Distance::likePercent() scores an empty text
        if (!text.isEmpty() && !query.isEmpty()) {
            const qint64 furthest =
                std::min<qint64>(distanceToBeat(bestScore, text.size()), std::max(text.size(), query.size()));
            const qint64 distance = editDistance(text, query, furthest, stop);
            if (distance > furthest)
                continue;
            score = likenessAtDistance(distance, text.size());
        }
        if (score > bestScore) {
            best = index;
            bestScore = score;
        }
    }
    return best;
}

LyricAnswer AnswerReader::readSearch(const QByteArray &body, const QString &query,
                                     const std::stop_token &stop)
{
    const std::optional<QJsonObject> reply = jsonObject(body);
    if (!reply)
        return failure(QVLyricError::SearchFailed, EmptyResponse);
    if (const auto reported = reportedFailure(*reply))
        return *reported;
    QList<QJsonObject> candidates = usableCandidates(reply->value(LookupProtocol::Results).toArray());
    if (candidates.isEmpty())
        return failure(QVLyricError::NothingFound, QStringLiteral("没有结果")); // never translated
    const qint64 best = bestMatch(candidates, query, stop);
    return {std::nullopt, std::move(candidates), best, {}};
}

LyricAnswer AnswerReader::readDetail(const QByteArray &body, const QString &, const std::stop_token &)
{
    const std::optional<QJsonObject> reply = jsonObject(body);
    if (!reply)
        return failure(QVLyricError::DetailUnreadable, EmptyResponse);
    if (const auto reported = reportedFailure(*reply))
        return *reported;
    // A reply without a lyric is a success on purpose.
    const QJsonObject result = reply->value(LookupProtocol::Result).toObject();
    return {std::nullopt, {}, 0, stringForKeySafeModel(result, Key_Lyric_Lyric)};
}

} // namespace QVSongLrcPrivate
