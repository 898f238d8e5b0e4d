// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/ZTLyricRequestModel.h>

#include "model/Saturating.h"
#include "AnswerReader.h"
#include "LookupScope.h"
#include "QtHttpClient.h"
#include "SafeModel.h"

#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVSongLrcConstants.h>

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

using namespace QVSongLrcPrivate;

namespace {

constexpr qint64 EmptyQuery = -1002;
constexpr qint64 SearchFailed = -1002;
constexpr qint64 DetailFailed = -1011;
constexpr qint64 NothingFound = -1004;

/// Logs a transport failure, and stands in for the error of one that came without.
QVLyricError transportFailure(const std::optional<QVLyricError> &error, qint64 codeWithoutError)
{
    QVLyricError failure = error.value_or(
        QVLyricError{QVLyricError::ServiceDomain, codeWithoutError, QStringLiteral("networkError")});
    qWarning().noquote() << failure.description();
    return failure;
}

template <typename Completion>
void require(const Completion &completion)
{
    if (!completion)
        throw std::invalid_argument("ZTLyricRequestModel: a request needs a completion");
}

QString orEmpty(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

ZTLyricRequestModel::ZTLyricRequestModel(const QJsonObject &reqParams)
    : m_reqParams(reqParams)
{
}

ZTLyricRequestModel::~ZTLyricRequestModel()
{
    qInfo("ZTLyricRequestModel dealloced ----");
}

std::shared_ptr<ZTLyricRequestModel> ZTLyricRequestModel::initWithReqParams(const QJsonObject &reqParams)
{
    return std::shared_ptr<ZTLyricRequestModel>(new ZTLyricRequestModel(reqParams));
}

QString ZTLyricRequestModel::queryValue(QLatin1StringView key) const
{
    return orEmpty(stringForKeySafeModel(m_reqParams, key));
}

void ZTLyricRequestModel::requestListWithCompletion(ListCompletion completion)
{
    require(completion);
    const QString track = queryValue(Key_Lyric_Trackname);
    const QString artist = queryValue(Key_Lyric_Artist);
    if (track.isEmpty() && artist.isEmpty()) {
        completion(QVLyricError{QVLyricError::EmptyQueryDomain, EmptyQuery, QString()}, {}, 0);
        return;
    }
    m_dataTask = afPostMgr()->post(
        QStringLiteral("/phpLyricFetcher/search/search.php"),
        {{"artist", artist}, {"track", track}, {"apiKey", QVLrcUtils::generateLyricApiKey()}},
        [self = shared_from_this(), completion](const QByteArray &body) {
            const QString query = self->queryValue(Key_Lyric_Trackname) + self->queryValue(Key_Lyric_Artist);
            LookupScope::instance().compute(
                [body, query](const std::stop_token &stop) {
                    return AnswerReader::readSearch(body, query, stop);
                },
                [self, completion](const LyricAnswer &answer) {
                    completion(answer.error, answer.results, answer.bestIndex);
                });
        },
        [completion](const std::optional<QVLyricError> &error) {
            completion(transportFailure(error, SearchFailed), {}, 0);
        });
}

void ZTLyricRequestModel::requestDetail(const QString &link, LyricCompletion completion)
{
    require(completion);
    m_dataTask = afPostMgr()->post(
        QStringLiteral("/phpLyricFetcher/detail/detail.php"),
        {{"artist", queryValue(Key_Lyric_Artist)},
         {"track", queryValue(Key_Lyric_Trackname)},
         {"link", orEmpty(link)},
         {"apiKey", QVLrcUtils::generateLyricApiKey()}},
        [self = shared_from_this(), completion](const QByteArray &body) {
            LookupScope::instance().compute(
                [body](const std::stop_token &) { return AnswerReader::readDetail(body); },
                [self, completion](const LyricAnswer &answer) { completion(answer.error, answer.lyric); });
        },
        [completion](const std::optional<QVLyricError> &error) {
            completion(transportFailure(error, DetailFailed), QString());
        });
}

void ZTLyricRequestModel::requestWithCompletion(LyricCompletion completion)
{
    require(completion);
    // Not held by the closure: a search that succeeds holds the model, one that fails has no use for it.
    requestListWithCompletion(
        [weakSelf = weak_from_this(), completion = std::move(completion)](
            const std::optional<QVLyricError> &error, const QList<QJsonObject> &results, qint64 bestIndex) {
            if (error) {
                completion(error, QString());
                return;
            }
            if (results.isEmpty()) {
                completion(QVLyricError{QVLyricError::ServiceDomain, NothingFound,
                                        QCoreApplication::translate("Localized", "Found no lyric")},
                           QString());
                return;
            }
            const bool isInRange = bestIndex >= 0 && bestIndex < results.size();
            const QString link =
                stringForKeySafeModel(results[isInRange ? bestIndex : 0], QLatin1StringView("link"));
            if (const auto self = weakSelf.lock())
                self->requestDetail(link, completion);
        });
}

void ZTLyricRequestModel::cancel()
{
    if (m_dataTask)
        m_dataTask->cancel();
}

QString ZTLyricRequestModel::getReportDuration(double seconds)
{
    constexpr qint64 Max = std::numeric_limits<qint32>::max();
    constexpr qint64 Min = std::numeric_limits<qint32>::min();
    if (std::isnan(seconds))
        return QStringLiteral("0");
    const qint64 milliseconds = std::clamp(Saturating::fromDouble(seconds * 1000.0), Min, Max);
    return QString::number(milliseconds / 100 * 100);
}

std::optional<QJsonObject> ZTLyricRequestModel::jsonObjectfromResponse(const QByteArray &response)
{
    return AnswerReader::jsonObject(response);
}

QList<QJsonObject> ZTLyricRequestModel::filterResultList(const QJsonArray &list)
{
    return AnswerReader::usableCandidates(list);
}

std::optional<QJsonObject> ZTLyricRequestModel::getBestMatch(const QList<QJsonObject> &list) const
{
    if (list.isEmpty())
        return std::nullopt;
    return list[AnswerReader::bestMatch(list,
                                        queryValue(Key_Lyric_Trackname) + queryValue(Key_Lyric_Artist))];
}

std::shared_ptr<LyricHttpClient> ZTLyricRequestModel::afPostMgr() const
{
    auto client = std::make_shared<QtHttpClient>();
    client->setHeader("Content-Type", "application/x-www-form-urlencoded");
    client->setHeader("Accept", "application/json");
    return client;
}
