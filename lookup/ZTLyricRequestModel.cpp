// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/ZTLyricRequestModel.h>

#include "BestMatch.h"
#include "LookupLog.h"
#include "LookupProtocol.h"
#include "LookupScope.h"
#include "QtHttpClient.h"
#include "ReplyReader.h"
#include "SafeModel.h"
#include "model/Saturating.h"

#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVLyricService.h>
#include <QVSongLrc/QVSongLrcConstants.h>

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

using namespace QVSongLrcPrivate;

struct Q_DECL_HIDDEN ZTLyricRequestModel::Private
{
    using Done = LookupScope::Done;

    /// Starts a search or, with a \p link, a detail request.
    static void start(ZTLyricRequestModel &model, const std::optional<QString> &link, const Done &done);

    QJsonObject reqParams;
    std::shared_ptr<QList<qint64>> retryIndexes = std::make_shared<QList<qint64>>(QList<qint64>{0, 1, 2});
    std::shared_ptr<QVLyricDataTask> dataTask;
};

namespace QVSongLrcPrivate {
Q_LOGGING_CATEGORY(lookupLog, "qvsonglrc.lookup")
}

namespace {

/// Logs a transport failure. Makes an error when the transport gave none.
QVLyricError transportFailure(const std::optional<QVLyricError> &error, qint64 codeWithoutError)
{
    QVLyricError failure = error.value_or(
        QVLyricError{QVLyricError::ServiceDomain, codeWithoutError, QStringLiteral("networkError")});
    qCWarning(lookupLog).noquote() << failure.description();
    return failure;
}

template <typename Completion>
void require(const Completion &completion)
{
    if (!completion)
        throw std::invalid_argument("ZTLyricRequestModel: a request needs a completion");
}

/// \p completion, to be called only while \p context exists.
template <typename Completion>
Completion whileExists(QObject *context, Completion completion)
{
    require(completion);
    if (!context)
        throw std::invalid_argument("ZTLyricRequestModel: the context is null");
    return [context = QPointer(context), completion = std::move(completion)](const auto &...answer) {
        if (context)
            completion(answer...);
    };
}

QString orEmpty(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

QString valueOf(const QJsonObject &query, QLatin1StringView key)
{
    return orEmpty(stringForKeySafeModel(query, key));
}

QString joined(const QJsonObject &query)
{
    return valueOf(query, Key_Lyric_Trackname) + valueOf(query, Key_Lyric_Artist);
}

} // namespace

void ZTLyricRequestModel::Private::start(ZTLyricRequestModel &model, const std::optional<QString> &link,
                                         const Done &done)
{
    QVLyricHttpClient::Fields fields{{Key_Lyric_Artist, valueOf(model.d->reqParams, Key_Lyric_Artist)},
                                     {Key_Lyric_Trackname, valueOf(model.d->reqParams, Key_Lyric_Trackname)}};
    if (link)
        fields.append({LookupProtocol::Link, orEmpty(*link)});
    fields.append({LookupProtocol::ApiKey, QVLrcUtils::generateLyricApiKey()});
    const auto read = link ? ReplyReader::readDetail : ReplyReader::readSearch;
    const qint64 failed = link ? QVLyricError::DetailFailed : QVLyricError::SearchFailed;
    model.d->dataTask = model.afPostMgr()->post(
        QVLyricService::url(link ? LookupProtocol::DetailPath : LookupProtocol::SearchPath), fields,
        [self = model.shared_from_this(), read, done](const QByteArray &body) {
            LookupScope::instance().compute(
                [read, body, query = joined(self->d->reqParams)](const std::stop_token &stop) {
                    return read(body, query, stop);
                },
                [self, done](const LookupResult &answer) { done(answer); });
        },
        [done, failed](const std::optional<QVLyricError> &error) {
            done({transportFailure(error, failed), {}, 0, {}});
        });
}

ZTLyricRequestModel::ZTLyricRequestModel(const QJsonObject &reqParams)
    : d(new Private)
{
    d->reqParams = reqParams;
}

ZTLyricRequestModel::~ZTLyricRequestModel()
{
    qCInfo(lookupLog, "ZTLyricRequestModel dealloced ----");
}

std::shared_ptr<ZTLyricRequestModel> ZTLyricRequestModel::initWithReqParams(const QJsonObject &reqParams)
{
    return std::shared_ptr<ZTLyricRequestModel>(new ZTLyricRequestModel(reqParams));
}

std::shared_ptr<QList<qint64>> ZTLyricRequestModel::retryIndexes() const
{
    return d->retryIndexes;
}

void ZTLyricRequestModel::setRetryIndexes(std::shared_ptr<QList<qint64>> indexes)
{
    d->retryIndexes = std::move(indexes);
}

QJsonObject ZTLyricRequestModel::reqParams() const
{
    return d->reqParams;
}

void ZTLyricRequestModel::setReqParams(const QJsonObject &params)
{
    d->reqParams = params;
}

std::shared_ptr<QVLyricDataTask> ZTLyricRequestModel::dataTask() const
{
    return d->dataTask;
}

void ZTLyricRequestModel::setDataTask(std::shared_ptr<QVLyricDataTask> task)
{
    d->dataTask = std::move(task);
}

void ZTLyricRequestModel::requestListWithCompletion(ListCompletion completion)
{
    require(completion);
    if (joined(d->reqParams).isEmpty()) {
        completion(QVLyricError{QVLyricError::EmptyQueryDomain, QVLyricError::EmptyQuery, QString()}, {}, 0);
        return;
    }
    Private::start(*this, std::nullopt, [completion](const LookupResult &answer) {
        completion(answer.error, answer.results, answer.bestIndex);
    });
}

void ZTLyricRequestModel::requestListWithCompletion(QObject *context, ListCompletion completion)
{
    requestListWithCompletion(whileExists(context, std::move(completion)));
}

void ZTLyricRequestModel::requestDetail(const QString &link, LyricCompletion completion)
{
    require(completion);
    Private::start(*this, link,
                   [completion](const LookupResult &answer) { completion(answer.error, answer.lyric); });
}

void ZTLyricRequestModel::requestDetail(const QString &link, QObject *context, LyricCompletion completion)
{
    requestDetail(link, whileExists(context, std::move(completion)));
}

void ZTLyricRequestModel::requestWithCompletion(LyricCompletion completion)
{
    require(completion);
    // Weak: a search that succeeds keeps the model alive, and one that fails does not need it.
    requestListWithCompletion([weakSelf = weak_from_this(), completion = std::move(completion)](
                                  const std::optional<QVLyricError> &error, const QList<QJsonObject> &results,
                                  qint64 bestIndex) {
        if (error) {
            completion(error, QString());
            return;
        }
        if (results.isEmpty()) {
            completion(QVLyricError{QVLyricError::ServiceDomain, QVLyricError::NothingFound,
                                    QCoreApplication::translate("Localized", "Found no lyric")},
                       QString());
            return;
        }
        const bool isInRange = bestIndex >= 0 && bestIndex < results.size();
        const QString link = stringForKeySafeModel(results[isInRange ? bestIndex : 0], LookupProtocol::Link);
        if (const auto self = weakSelf.lock())
            self->requestDetail(link, completion);
    });
}

void ZTLyricRequestModel::requestWithCompletion(QObject *context, LyricCompletion completion)
{
    requestWithCompletion(whileExists(context, std::move(completion)));
}

void ZTLyricRequestModel::cancel()
{
    if (d->dataTask)
        d->dataTask->cancel();
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
    return ReplyReader::jsonObject(response);
}

QList<QJsonObject> ZTLyricRequestModel::filterResultList(const QJsonArray &list)
{
    return ReplyReader::usableCandidates(list);
}

std::optional<QJsonObject> ZTLyricRequestModel::getBestMatch(const QList<QJsonObject> &list) const
{
    if (list.isEmpty())
        return std::nullopt;
    return list[bestMatch(list, joined(d->reqParams))];
}

std::shared_ptr<QVLyricHttpClient> ZTLyricRequestModel::afPostMgr() const
{
    auto client = std::make_shared<QtHttpClient>();
    client->setHeader("Content-Type", LookupProtocol::FormType.data());
    client->setHeader("Accept", LookupProtocol::JsonType.data());
    return client;
}
