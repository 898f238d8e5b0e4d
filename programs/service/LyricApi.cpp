// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricApi.h"

#include "ErrorReplies.h"
#include "Form.h"
#include "HttpsConnection.h"
#include "LyricText.h"
#include "RequestKeyCheck.h"
#include "SongIndex.h"
#include "lookup/LookupProtocol.h"

#include <QVSongLrc/QVSongLrcConstants.h>

#include <QDateTime>
#include <QDebug>
#include <QElapsedTimer>
#include <QHttpServerResponder>
#include <QJsonArray>
#include <QMetaEnum>

#include <cstdio>

using namespace QVSongLrcPrivate;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxLoggedPath = 200;

const ServiceError *errorOf(RequestKeyState state)
{
    switch (state) {
    case RequestKeyState::Valid:
        return nullptr;
    case RequestKeyState::Missing:
        return &ErrorReplies::MissingKey;
    case RequestKeyState::Invalid:
        return &ErrorReplies::InvalidKey;
    case RequestKeyState::OutOfTime:
        return &ErrorReplies::KeyOutOfTime;
    }
    return &ErrorReplies::InvalidKey;
}

} // namespace

LyricApi::Answer::Answer(const ServiceError &error)
    : status(error.status)
    , body(QJsonDocument::fromJson(error.json()).object())
{
}

LyricApi::Answer::Answer(const QString &key, const QJsonValue &value)
    : body{{LookupProtocol::Code, LookupProtocol::Success}, {key, value}}
{
}

LyricApi::LyricApi(SongIndex &index, const QString &library, bool log)
    : m_index(index)
    , m_library(library)
    , m_log(log)
{
}

bool LyricApi::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    auto *connection = qobject_cast<HttpsConnection *>(socket);
    if (!connection || !connection->hasRequest())
        return true; // Qt parsed the request differently than HttpsConnection, which will refuse it
    QElapsedTimer clock;
    clock.start();
    const QString path = request.url().path();
    const Answer reply = answer(request, path);
    {
        QHttpServerResponder responder = makeResponder(request, socket);
        const QByteArray body = QJsonDocument(reply.body).toJson(QJsonDocument::Compact);
        const auto status = QHttpServerResponder::StatusCode(reply.status);
        if (reply.status == ErrorReplies::WrongMethod.status)
            responder.write(body, {{"Content-Type", LookupProtocol::JsonType.data()}, {"Allow", "POST"}},
                            status);
        else
            responder.write(body, {{"Content-Type", LookupProtocol::JsonType.data()}}, status);
    }
    connection->replied();
    const char *method = QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(int(request.method()));
    log(QString::fromLatin1(method).toUpper(), path, reply, clock.nsecsElapsed() / 1000);
    return true;
}

LyricApi::Answer LyricApi::answer(const QHttpServerRequest &request, const QString &path)
{
    const bool isSearch = path == LookupProtocol::SearchPath;
    if (!isSearch && path != LookupProtocol::DetailPath)
        return ErrorReplies::UnknownPath;
    if (request.method() != QHttpServerRequest::Method::Post)
        return ErrorReplies::WrongMethod;
    const QByteArray type = request.value("Content-Type").split(';').front(); // without parameters
    if (type.trimmed().toLower() != QByteArrayView(LookupProtocol::FormType))
        return ErrorReplies::NoForm;
    const auto form = readForm(request.body());
    if (!form)
        return ErrorReplies::BadForm;
    const auto state =
        checkRequestKey(form->value(LookupProtocol::ApiKey), QDateTime::currentSecsSinceEpoch());
    if (const ServiceError *error = errorOf(state))
        return *error;
    try {
        return isSearch ? search(*form) : detail(*form);
    } catch (const StorageError &error) {
        qWarning("can't read the song index: %s", error.what());
        return ErrorReplies::NoIndex;
    }
}

LyricApi::Answer LyricApi::search(const Form &form)
{
    const QString track = form.value(Key_Lyric_Trackname);
    const QString artist = form.value(Key_Lyric_Artist);
    if (track.isEmpty() && artist.isEmpty())
        return ErrorReplies::EmptyQuery;
    QJsonArray results;
    const auto candidates = m_index.search(track, artist);
    for (const SongIndex::Candidate &candidate : candidates) {
        // Clients drop candidates without an artist.
        results.append(
            QJsonObject{{Key_Lyric_Trackname, candidate.track},
                        {Key_Lyric_Artist, candidate.artist.isEmpty() ? u"Unknown"_s : candidate.artist},
                        {LookupProtocol::Link, candidate.link}});
    }
    return Answer(LookupProtocol::Results, results);
}

LyricApi::Answer LyricApi::detail(const Form &form)
{
    const auto path = m_index.path(form.value(LookupProtocol::Link));
    if (!path)
        return ErrorReplies::UnknownLink;
    // Since it was indexed the file may have been replaced by a symbolic link, or by a pipe whose opening blocks.
    const QFileInfo file(m_library.filePath(*path));
    QString error = u"not a regular file any more"_s;
    const bool isRegular = file.isFile() && file.canonicalFilePath() == file.filePath();
    const auto text = isRegular ? readLyricText(file.filePath(), &error) : std::nullopt;
    if (!text) {
        qWarning().noquote() << "can't serve" << QDebug::toString(*path) << '-' << error;
        return ErrorReplies::UnreadableLyric;
    }
    return Answer(LookupProtocol::Result, QJsonObject{{Key_Lyric_Lyric, *text}});
}

void LyricApi::logRefused(const ServiceError &error, const QByteArray &requestLine) const
{
    const QList<QByteArray> words = requestLine.split(' ');
    const QByteArray target = words.value(1);
    const qsizetype query = target.indexOf('?');
    log(QString::fromLatin1(words.front()), QString::fromLatin1(query < 0 ? target : target.first(query)),
        error, 0);
}

void LyricApi::log(const QString &method, const QString &path, const Answer &answer,
                   qint64 microseconds) const
{
    if (!m_log)
        return;
    const QJsonObject line{
        {"time"_L1, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {"method"_L1, method.left(MaxLoggedPath)},
        {"path"_L1, path.left(MaxLoggedPath)},
        {"status"_L1, answer.status},
        {LookupProtocol::Code, answer.body.value(LookupProtocol::Code)},
        {"ms"_L1, double(microseconds) / 1000.0},
        {LookupProtocol::Results, answer.body.value(LookupProtocol::Results).toArray().size()}};
    std::fputs(QJsonDocument(line).toJson(QJsonDocument::Compact).append('\n').constData(), stdout);
    std::fflush(stdout);
}
