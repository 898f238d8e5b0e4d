// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "AnswerReader.h"

#include "EditDistance.h"
#include "Likeness.h"
#include "SafeModel.h"

#include <QVSongLrc/QVSongLrcConstants.h>

#include <QJsonDocument>

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

constexpr qint64 NoObjectInSearch = -1002;
constexpr qint64 NoObjectInDetail = -1010;
constexpr qint64 NoCandidate = -1004;

LyricAnswer failure(qint64 code, const QString &description)
{
    return {QVLyricError{QVLyricError::ServiceDomain, code, description}, {}, 0, {}};
}

/// The error that the service reports, if it does.
std::optional<LyricAnswer> reportedFailure(const QJsonObject &reply)
{
    const qint64 code = numberForKeySafeModel(reply, QLatin1StringView("code")).value_or(0);
    if (code == 0)
        return std::nullopt;
    const QString message = stringForKeySafeModel(reply, QLatin1StringView("message"));
    return failure(code, message.isNull() ? QStringLiteral("") : message);
}

/// The greatest distance at which a text of \p length code units scores above \p score; negative when none
/// does.
qint64 distanceToBeat(float score, qint64 length)
{
    // The guess is off by what a float rounds away.
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
        const QJsonObject candidate = value.toObject(); // empty when it is none
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
    float bestScore = -1; // a candidate at a distance of more than its length does not count
    for (qsizetype index = 0; index < candidates.size() && !stop.stop_requested(); ++index) {
        const QJsonObject &candidate = candidates[index];
        const QString text = stringForKeySafeModel(candidate, Key_Lyric_Trackname)
            + stringForKeySafeModel(candidate, Key_Lyric_Artist);
        float score = float(text.size() + query.size()); // what Distance::likePercent gives for an empty text
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
        return failure(NoObjectInSearch, EmptyResponse.toString());
    if (const auto reported = reportedFailure(*reply))
        return *reported;
    const auto list = arrayForKeySafeModel(*reply, QLatin1StringView("results"));
    QList<QJsonObject> candidates = list ? usableCandidates(*list) : QList<QJsonObject>();
    if (candidates.isEmpty())
        return failure(NoCandidate, QStringLiteral("没有结果")); // to the letter, in every language
    const qint64 best = bestMatch(candidates, query, stop);
    return {std::nullopt, std::move(candidates), best, {}};
}

LyricAnswer AnswerReader::readDetail(const QByteArray &body)
{
    const std::optional<QJsonObject> reply = jsonObject(body);
    if (!reply)
        return failure(NoObjectInDetail, EmptyResponse.toString());
    if (const auto reported = reportedFailure(*reply))
        return *reported;
    // A reply without a lyric is a success without text, which is meant.
    const auto result = dictionaryForKeySafeModel(*reply, QLatin1StringView("result"));
    return {std::nullopt, {}, 0, result ? stringForKeySafeModel(*result, Key_Lyric_Lyric) : QString()};
}

} // namespace QVSongLrcPrivate
