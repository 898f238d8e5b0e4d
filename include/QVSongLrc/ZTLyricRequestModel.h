// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricDataTask.h>
#include <QVSongLrc/QVLyricError.h>
#include <QVSongLrc/QVLyricHttpClient.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QObject;

/// The client of the lyric service. An instance holds one query, a title and an artist. It normally makes two
/// requests: a search for candidates, and a detail request for the lyric of one of them.
///
/// Needs a QCoreApplication; use from its main thread. Every request calls its completion exactly once, from
/// the event loop; only an empty query is refused before the call returns. No request is repeated. A request
/// keeps the model alive until a completion that reports success has returned, so the caller may drop the
/// model right after starting one. A completion may do anything: start another request, drop the model, run
/// an event loop, or quit the application. Requests that are outstanding when the application object is
/// destroyed are dropped, and their completions are not called.
///
/// The functions with a context skip the completion when the context has been destroyed; the request itself
/// goes on. All functions that start a request throw std::invalid_argument when the completion is absent or
/// the context is null, and then send nothing.
///
/// Errors:
///
/// | domain | code | description | when |
/// |---|---|---|---|
/// | EmptyQueryDomain | EmptyQuery | absent | a search has neither title nor artist |
/// | ServiceDomain | SearchFailed, DetailUnreadable | "empty response" | the reply is not a JSON object |
/// | ServiceDomain | the reply's "code" | its "message", or "" | the reply's "code" is not 0 |
/// | ServiceDomain | NothingFound | "没有结果" | the search found no candidate with title and artist |
/// | ServiceDomain | NothingFound | "Found no lyric", translated | a derived class's search returned an empty list |
/// | ServiceDomain | SearchFailed, DetailFailed | "networkError" | the transport failed without an error |
/// | TransportDomain | a TransportCode | in English unless the host translates it | the transport failed or was cancelled |
///
/// A request fails when it makes no progress for 60 s, or when the uncompressed reply exceeds 16 MiB. Replies are
/// parsed on another thread, so that a long one does not block the event loop. Transport errors are logged as
/// warnings in the category "qvsonglrc.lookup".
class QVSONGLRC_LOOKUP_EXPORT ZTLyricRequestModel : public std::enable_shared_from_this<ZTLyricRequestModel>
{
public:
    /// Takes the error if there is one, the candidates, and the index of the best candidate. With an error
    /// the list is empty and the index 0; without one the list is not empty.
    using ListCompletion = std::function<void(const std::optional<QVLyricError> &error,
                                              const QList<QJsonObject> &results, qint64 bestIndex)>;

    /// Takes the error if there is one, and the lyric. The lyric is absent with an error, and also when a
    /// successful reply contained none.
    using LyricCompletion =
        std::function<void(const std::optional<QVLyricError> &error, const QString &lyric)>;

    /// A model of the query \p reqParams: strings under Key_Lyric_Trackname and Key_Lyric_Artist. A missing
    /// value, or one that is not a string, counts as empty.
    static std::shared_ptr<ZTLyricRequestModel> initWithReqParams(const QJsonObject &reqParams);

    ZTLyricRequestModel(const ZTLyricRequestModel &) = delete;
    ZTLyricRequestModel &operator=(const ZTLyricRequestModel &) = delete;

    /// Logs "ZTLyricRequestModel dealloced ----" in the category "qvsonglrc.lookup".
    virtual ~ZTLyricRequestModel();

    /// A list for callers; the library does not read it. Each model starts with its own list of 0, 1, 2. Returns
    /// the list itself, not a copy.
    std::shared_ptr<QList<qint64>> retryIndexes() const;

    /// Keeps \p indexes itself, not a copy. It may be null.
    void setRetryIndexes(std::shared_ptr<QList<qint64>> indexes);

    /// The query.
    QJsonObject reqParams() const;
    void setReqParams(const QJsonObject &params);

    /// The task of the latest request, even after that has finished; null before the first request.
    std::shared_ptr<QVLyricDataTask> dataTask() const;
    void setDataTask(std::shared_ptr<QVLyricDataTask> task);

    /// Requests the candidates. A query with neither title nor artist is refused before this call returns,
    /// and nothing is sent.
    ///
    /// A derived class that overrides this function or requestDetail() hides the overload with a context;
    /// `using ZTLyricRequestModel::requestListWithCompletion;` makes it visible again. Both overloads call
    /// the override. An override must keep the model alive until it has called the completion.
    virtual void requestListWithCompletion(ListCompletion completion);
    void requestListWithCompletion(QObject *context, ListCompletion completion);

    /// Requests the lyric of the candidate whose "link" is \p link. An absent link counts as empty; the
    /// request is sent anyway.
    virtual void requestDetail(const QString &link, LyricCompletion completion);
    void requestDetail(const QString &link, QObject *context, LyricCompletion completion);

    /// Requests the candidates, then the lyric of the best one.
    void requestWithCompletion(LyricCompletion completion);
    void requestWithCompletion(QObject *context, LyricCompletion completion);

    /// Cancels dataTask(), but no earlier request of this model. Does nothing when there is no task.
    void cancel();

    /// \p seconds as text in whole ms, cut down to a multiple of 100: "1200" for 1.2345. Values beyond 32
    /// bits are limited to 32 bits; NaN gives "0".
    static QString getReportDuration(double seconds);

    /// The JSON object in \p response, UTF-8 with optional white space around it; nothing when there is none.
    static std::optional<QJsonObject> jsonObjectfromResponse(const QByteArray &response);

    /// The objects in \p list whose "track" and "artist" are strings and not empty, in the same order.
    static QList<QJsonObject> filterResultList(const QJsonArray &list);

    /// The candidate in \p list whose title and artist, joined, are most like the query's by
    /// Distance::likePercent(). Of several equally good ones it is the first; when none scores above -1, it is
    /// the first in the list. Nothing when \p list is empty.
    std::optional<QJsonObject> getBestMatch(const QList<QJsonObject> &list) const;

    /// A new HTTP client, with the headers of a form set. Every request gets its client here; override this
    /// function to use a transport of your own. The client must not be null.
    virtual std::shared_ptr<QVLyricHttpClient> afPostMgr() const;

protected:
    /// For derived classes. Their objects, too, must be owned by a `std::shared_ptr`.
    explicit ZTLyricRequestModel(const QJsonObject &reqParams);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
