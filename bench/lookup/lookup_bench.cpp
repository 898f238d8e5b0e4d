// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "lookup/LookupProtocol.h"
#include "tests/LookupServer.h"

#include <QVSongLrc/Distance.h>
#include <QVSongLrc/QVLyricService.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString randomText(QRandomGenerator &random, qsizetype length, char16_t first = u'a', int alphabet = 26)
{
    QString text(length, Qt::Uninitialized);
    for (QChar &unit : text)
        unit = QChar(char16_t(first + random.bounded(alphabet)));
    return text;
}

// Two random texts of the same length.
void likePercent(benchmark::State &state, char16_t first, int alphabet)
{
    QRandomGenerator random(1);
    const QString a = randomText(random, state.range(0), first, alphabet);
    const QString b = randomText(random, state.range(0), first, alphabet);
    for (auto _ : state)
        benchmark::DoNotOptimize(Distance::likePercent(a, b));
}
BENCHMARK_CAPTURE(likePercent, Latin, u'a', 26)->Arg(40)->Arg(64)->Arg(65)->Arg(400)->Arg(10'000);
BENCHMARK_CAPTURE(likePercent, Han, u'\u4e00', 3000)->Arg(40)->Arg(400)->Arg(10'000);
BENCHMARK_CAPTURE(likePercent, LatinMega, u'a', 26)
    ->Arg(1'000'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// A million code units, 100 of them changed.
void likePercentOfNearTexts(benchmark::State &state)
{
    QRandomGenerator random(2);
    const QString a = randomText(random, 1'000'000);
    QString b = a;
    for (int change = 0; change < 100; ++change)
        b[random.bounded(b.size())] = u'!';
    for (auto _ : state)
        benchmark::DoNotOptimize(Distance::likePercent(a, b));
}
BENCHMARK(likePercentOfNearTexts)->Unit(benchmark::kMillisecond);

// 10,000 candidates of 40 code units, title and artist together.
void getBestMatch(benchmark::State &state)
{
    QRandomGenerator random(3);
    QList<QJsonObject> candidates;
    for (int index = 0; index < 10'000; ++index)
        candidates += {{Key_Lyric_Trackname, randomText(random, 25)},
                       {Key_Lyric_Artist, randomText(random, 15)},
                       {u"link"_s, QString::number(index)}};
    const auto model = ZTLyricRequestModel::initWithReqParams(
        {{Key_Lyric_Trackname, randomText(random, 25)}, {Key_Lyric_Artist, randomText(random, 15)}});
    for (auto _ : state)
        benchmark::DoNotOptimize(model->getBestMatch(candidates));
}
BENCHMARK(getBestMatch)->Unit(benchmark::kMillisecond);

/// A lyric service on loopback.
LookupServer &service()
{
    static LookupServer server;
    return server;
}

// The server's reply to the title "good".
constexpr char Reply[] = R"({"results":[{"track":"T","artist":"A","link":"1"}],"result":{"lyric":"text"}})";

void reportMedian(benchmark::State &state, std::vector<double> &seconds)
{
    std::sort(seconds.begin(), seconds.end());
    state.counters["median_ms"] = seconds[seconds.size() / 2] * 1000;
}

template <typename Request>
void timeRequests(benchmark::State &state, const Request &request)
{
    std::vector<double> seconds;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (!request()) {
            state.SkipWithError("the request failed");
            return;
        }
        const double time = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.SetIterationTime(time);
        service().requests(); // takes them from the server, which would wait when there are too many
        seconds.push_back(time);
    }
    reportMedian(state, seconds);
}

// From the call to the completion.
void requestList(benchmark::State &state)
{
    service();
    const auto model = ZTLyricRequestModel::initWithReqParams(
        {{Key_Lyric_Trackname, u"good"_s}, {Key_Lyric_Artist, u"An artist"_s}});
    timeRequests(state, [&model] {
        QEventLoop loop;
        bool isGood = false;
        model->requestListWithCompletion([&](const auto &error, const auto &...) {
            isGood = !error;
            loop.quit();
        });
        loop.exec();
        return isGood;
    });
}

size_t append(char *bytes, size_t size, size_t count, void *body)
{
    static_cast<QByteArray *>(body)->append(bytes, qsizetype(size * count));
    return size * count;
}

constexpr char Form[] = "artist=An%20artist&track=good&apiKey=zA3NiNJ1lsJpyxkINmV9NDSy7Q3itTJPqHFvCaXpOew%3D";

// The same POST with a QNetworkAccessManager alone, to show how much of requestList's time is Qt's.
void managerPost(benchmark::State &state)
{
    QSslConfiguration configuration;
    service();
    configuration.setCaCertificates(QSslCertificate::fromData(QVLyricService::certificateAuthorities()));
    QNetworkRequest request(QVLyricService::url(QVSongLrcPrivate::LookupProtocol::SearchPath));
    request.setSslConfiguration(configuration);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/x-www-form-urlencoded"_s);
    timeRequests(state, [&request] {
        QNetworkAccessManager manager;
        QEventLoop loop;
        QNetworkReply *const reply = manager.post(request, Form);
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return reply->readAll() == Reply;
    });
}

// The same POST with libcurl and a new connection.
void curlPost(benchmark::State &state)
{
    service();
    const QByteArray pem = QVLyricService::certificateAuthorities();
    const QByteArray url = QVLyricService::url(QVSongLrcPrivate::LookupProtocol::SearchPath).toEncoded();
    timeRequests(state, [&] {
        CURL *const curl = curl_easy_init();
        curl_blob authority{const_cast<char *>(pem.constData()), size_t(pem.size()), CURL_BLOB_NOCOPY};
        curl_slist *const headers = curl_slist_append(nullptr, "Accept: application/json");
        QByteArray body;
        curl_easy_setopt(curl, CURLOPT_URL, url.constData());
        curl_easy_setopt(curl, CURLOPT_CAINFO_BLOB, &authority);
        curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, Form);
        curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, append);
        curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
        const CURLcode result = curl_easy_perform(curl);
        curl_slist_free_all(headers);
        curl_easy_cleanup(curl);
        return result == CURLE_OK && body == Reply;
    });
}
BENCHMARK(curlPost)->Iterations(200)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(managerPost)->Iterations(200)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(requestList)->Iterations(200)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
