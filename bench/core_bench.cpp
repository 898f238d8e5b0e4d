// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Benchmarks of the documents, and of a floor to compare them with. bench/ratios.py compares the results.

#include "Corpus.h"

#include <QVSongLrc/QVSongLrc.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <optional>
#include <set>

using namespace Qt::StringLiterals;
using namespace std::string_literals;

namespace {

// What a reader of lyrics cannot do without: one pass over the text that finds the lines and their plain time tags,
// and keeps views and times. It knows nothing of the library's lines.
struct Floor
{
    struct Line
    {
        QStringView text;
        std::size_t timesEnd;
    };
    std::vector<Line> lines;
    std::vector<qint64> times;

    void buildWithLrcText(const QString &text)
    {
        for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end + 1) {
            end = text.indexOf(u'\n', begin);
            if (end < 0)
                end = text.size();
            QStringView line = QStringView(text).sliced(begin, end - begin);
            while (line.size() >= 10 && line[0] == u'[' && line[1].isDigit() && line[2].isDigit()
                   && line[3] == u':' && line[4].isDigit() && line[5].isDigit() && line[6] == u'.'
                   && line[7].isDigit() && line[8].isDigit() && line[9] == u']') {
                const auto field = [line](qsizetype at) {
                    return (line[at].unicode() - u'0') * 10 + line[at + 1].unicode() - u'0';
                };
                times.push_back(field(1) * 60'000 + field(4) * 1'000 + field(7) * 10);
                line = line.sliced(10);
            }
            if (!line.isEmpty())
                lines.push_back({line, times.size()});
        }
    }
};

struct Import
{
    void buildWithLrcText(const QString &text) { lyric.emplace(text); }
    std::optional<QVLyricImport> lyric;
};

constexpr auto NoMore = [](auto &) {};

template <typename Song, typename More = decltype(NoMore)>
void build(benchmark::State &state, const Corpus::Texts &texts, More more = NoMore)
{
    for (auto _ : state) {
        for (const QString &text : texts.songs) {
            Song song;
            song.buildWithLrcText(text);
            more(song);
            benchmark::DoNotOptimize(&song);
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * texts.lineCount);
}

void deleteHalf(benchmark::State &state, const Corpus::Texts &texts)
{
    QVEditSong song;
    song.buildWithLrcText(texts.songs.front());
    const QVSongLineList lines = *song.aryLines();
    std::set<quint64> indexes;
    for (quint64 i = 0; i < quint64(lines.size()); i += 2)
        indexes.insert(indexes.end(), i);
    for (auto _ : state) {
        song.setAryLines(std::make_shared<QVSongLineList>(lines));
        song.deleteLineAtIndexs(indexes);
    }
    state.SetItemsProcessed(state.iterations() * texts.lineCount);
}

// The number of bytes that are allocated on the heap.
double heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

// Bytes a line, without the text that the document keeps.
template <typename Song>
void memory(benchmark::State &state, const Corpus::Texts &texts)
{
    for (auto _ : state) {
        const double before = heapBytes();
        Song song;
        song.buildWithLrcText(texts.songs.front());
        double text = 0;
        for (const auto &line : *song.aryLines())
            text += double(line->displayText().size() + 1) * sizeof(char16_t);
        state.counters["bytes_per_line"] = (heapBytes() - before - text) / double(song.aryLines()->size());
    }
}

// Builds both documents of one text.
void buildBoth(benchmark::State &state, const QString &text)
{
    for (auto _ : state) {
        QVEditSong song;
        song.buildWithLrcText(text);
        QVPreviewSong preview;
        preview.buildWithLrcText(text);
    }
    state.counters["chars_per_second"] =
        benchmark::Counter(double(text.size()), benchmark::Counter::kIsIterationInvariantRate);
}

} // namespace

int main(int argc, char **argv)
{
    const std::pair<std::string, Corpus::Texts> corpora[] = {
        {"song", Corpus::oneSong()}, {"songs", Corpus::songs(2'000)}, {"big", Corpus::bigText()}};
    for (const auto &corpus : corpora) {
        const std::string &name = corpus.first;
        const Corpus::Texts &texts = corpus.second;
        const auto add = [&](const char *operation, auto run) {
            benchmark::RegisterBenchmark((operation + ('/' + name)).c_str(), run);
        };
        add("floor", [&](auto &state) { build<Floor>(state, texts); });
        add("edit", [&](auto &state) { build<QVEditSong>(state, texts); });
        add("import", [&](auto &state) { build<Import>(state, texts); });
        add("preview", [&](auto &state) { build<QVPreviewSong>(state, texts); });
        add("build_update", [&](auto &state) {
            build<QVEditSong>(state, texts, [](QVEditSong &song) { song.updateSongText(); });
        });
        add("preview_text", [&](auto &state) {
            build<QVPreviewSong>(state, texts,
                                 [](QVPreviewSong &preview) { preview.previewSongTextWithHasTag(true); });
        });
    }
    const Corpus::Texts &big = corpora[2].second;
    benchmark::RegisterBenchmark("delete_half/big", [&](auto &state) { deleteHalf(state, big); });
    benchmark::RegisterBenchmark("memory/edit", [&](auto &state) {
        memory<QVEditSong>(state, big);
    })->Iterations(1);
    benchmark::RegisterBenchmark("memory/preview", [&](auto &state) {
        memory<QVPreviewSong>(state, big);
    })->Iterations(1);
    benchmark::RegisterBenchmark("usual/32", [&](auto &state) { buildBoth(state, big.songs.front()); });
    // Texts that a careless reader goes over again and again.
    for (const auto &[name, piece] : {std::pair("spaces", u" "_s), std::pair("property_keys", u"[aa:"_s),
                                      std::pair("time_starts", u"[00:00.0"_s)}) {
        for (const int size : {8, 32}) {
            const QString text = piece.repeated(size * 1024 * 1024 / piece.size()) + u']';
            benchmark::RegisterBenchmark(("hostile_"s + name + '/' + std::to_string(size)).c_str(),
                                         [text](auto &state) { buildBoth(state, text); });
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
