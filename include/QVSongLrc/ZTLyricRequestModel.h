// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/LyricDataTask.h>
#include <QVSongLrc/QVLyricError.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace QVSongLrcPrivate {
class LyricHttpClient;
}

/// The client of the lyric service: one query (a title and an artist), normally asked once for the candidates
/// and once for the lyric of one of them.
///
/// Needs a QCoreApplication, and its main thread for every call. A request answers its completion once, from
/// the event loop; it never fails in another way and is never repeated. A request that has succeeded keeps
/// the model until its completion has run, so the caller may drop the model right after starting one. The
/// completion may do anything: start the next request, drop the model, run an event loop of its own, quit the
/// application. An absent completion throws std::invalid_argument. Requests outstanding when the application
/// object is destroyed are dropped without an answer.
///
/// What fails is told by QVLyricError:
///
/// | domain | code | description | when |
/// |---|---|---|---|
/// | EmptyQueryDomain | -1002 | absent | a search without title and artist |
/// | ServiceDomain | -1002, of a detail request -1010 | "empty response" | the reply is no JSON object |
/// | ServiceDomain | the service's "code" | its "message", or "" | the service says so by a "code" other than 0 |
/// | ServiceDomain | -1004 | "没有结果" | the search found no candidate with title and artist |
/// | ServiceDomain | -1004 | "Found no lyric", translated | a lookup whose search gave an empty list |
/// | ServiceDomain | -1002, of a detail request -1011 | "networkError" | the transport failed without a reason |
/// | TransportDomain | QNetworkReply::NetworkError | in words | the transport failed, was cancelled, or the |
/// | | | | HTTP status was outside 200 to 299 |
///
/// A transport that makes no progress for 60 s fails, so does a reply of more than 16 MiB, unpacked. Replies
/// are read on a thread of the library's, so a long one does not hold the event loop.
class QVSONGLRC_LOOKUP_EXPORT ZTLyricRequestModel : public std::enable_shared_from_this<ZTLyricRequestModel>
{
public:
    /// Takes the error if there is one, the candidates, and the index of the best of them. With an error the
    /// list is empty and the index 0; without one the list is not empty.
    using ListCompletion = std::function<void(const std::optional<QVLyricError> &error,
                                              const QList<QJsonObject> &results, qint64 bestIndex)>;

    /// Takes the error if there is one, and the lyric, which may be absent without an error too.
    using LyricCompletion =
        std::function<void(const std::optional<QVLyricError> &error, const QString &lyric)>;

    /// A model of the query \p reqParams: strings under Key_Lyric_Trackname and Key_Lyric_Artist. What is
    /// missing or no string counts as empty.
    static std::shared_ptr<ZTLyricRequestModel> initWithReqParams(const QJsonObject &reqParams);

    ZTLyricRequestModel(const ZTLyricRequestModel &) = delete;
    ZTLyricRequestModel &operator=(const ZTLyricRequestModel &) = delete;

    /// Logs "ZTLyricRequestModel dealloced ----".
    virtual ~ZTLyricRequestModel();

    /// For callers: 0, 1, 2 at first, and nothing here reads it.
    QList<qint64> retryIndexes() const { return m_retryIndexes; }
    void setRetryIndexes(const QList<qint64> &indexes) { m_retryIndexes = indexes; }

    /// The query.
    QJsonObject reqParams() const { return m_reqParams; }
    void setReqParams(const QJsonObject &params) { m_reqParams = params; }

    /// The request started last, also when it has been answered; null before the first.
    std::shared_ptr<LyricDataTask> dataTask() const { return m_dataTask; }
    void setDataTask(std::shared_ptr<LyricDataTask> task) { m_dataTask = std::move(task); }

    /// Asks the service for the candidates. A query without title and artist is refused before this call
    /// returns, and nothing is sent.
    virtual void requestListWithCompletion(ListCompletion completion);

    /// Asks the service for the lyric of the candidate whose "link" is \p link. An absent link counts as
    /// empty; the request is sent anyway.
    virtual void requestDetail(const QString &link, LyricCompletion completion);

    /// Asks for the candidates, then for the lyric of the best.
    void requestWithCompletion(LyricCompletion completion);

    /// Cancels dataTask(); other requests of this model go on. Does nothing when there is none.
    void cancel();

    /// \p seconds as whole milliseconds cut down to a multiple of 100, in decimal: 1.2345 gives "1200".
    /// Beyond 32 bits the limits count; what is no number counts as 0.
    static QString getReportDuration(double seconds);

    /// The JSON object that \p response is in UTF-8, white space around it ignored; nothing when it is none.
    static std::optional<QJsonObject> jsonObjectfromResponse(const QByteArray &response);

    /// Those of \p list that are objects whose "track" and "artist" are strings and not empty, in order.
    static QList<QJsonObject> filterResultList(const QJsonArray &list);

    /// The candidate of \p list whose title and artist, joined, are most like the query's; the first one
    /// among equals, and the first of all when the query is more than their whole length away from each.
    /// Nothing when \p list is empty.
    std::optional<QJsonObject> getBestMatch(const QList<QJsonObject> &list) const;

    /// A new HTTP client for one request. Every request takes one from here, so this is where a test puts
    /// another in its place.
    virtual std::shared_ptr<QVSongLrcPrivate::LyricHttpClient> afPostMgr() const;

protected:
    /// For classes that derive from this one; their objects, too, live in a `std::shared_ptr`.
    explicit ZTLyricRequestModel(const QJsonObject &reqParams);

private:
    QString queryValue(QLatin1StringView key) const;

    QList<qint64> m_retryIndexes{0, 1, 2};
    QJsonObject m_reqParams;
    std::shared_ptr<LyricDataTask> m_dataTask;
};
