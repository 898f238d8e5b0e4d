// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Benchmarks of the documents, and of their baselines (see Baseline.h). bench/ratios.py compares the results.

#include "Baseline.h"

#include <QVSongLrc/QVSongLrc.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <array>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

// A text like common lyrics: lines in order of time, every eighth sung again a minute later. Times stay below
// 100 minutes, so in longer texts the lines are closer together.
QString lyricText(qsizetype lines)
{
    static const std::array<QString, 5> words{
        u"Should old acquaintance be forgot"_s, u"and never brought to mind?"_s,
        u"For auld lang syne, my dear"_s, u"Во поле берёза стояла"_s, u"さくら さくら やよいの空は"_s};
    QString text;
    for (qsizetype i = 0; i < lines; ++i) {
        const qint64 time = i * std::min<qint64>(2'350, 5'900'000 / lines);
        text += QVUtils::getTimeIntervalPeerStr(time);
        if (i % 8 == 0)
            text += QVUtils::getTimeIntervalPeerStr(time + 61'230);
        text += words[std::size_t(i) % words.size()] + u'\n';
    }
    return text;
}

const QString &lyric(const benchmark::State &state)
{
    static std::map<qint64, QString> texts;
    QString &text = texts[state.range(0)];
    if (text.isNull())
        text = lyricText(state.range(0));
    return text;
}

void countLines(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Song>
void build(benchmark::State &state)
{
    const QString &text = lyric(state);
    for (auto _ : state) {
        Song song;
        song.buildWithLrcText(text);
        benchmark::DoNotOptimize(song.aryLines());
    }
    countLines(state);
}

void buildBaseline(benchmark::State &state)
{
    const QString &text = lyric(state);
    for (auto _ : state) {
        const Baseline::Document document = Baseline::build(text);
        benchmark::DoNotOptimize(document.lines.constData());
    }
    countLines(state);
}

void serialise(benchmark::State &state)
{
    QVEditSong song;
    song.buildWithLrcText(lyric(state));
    for (auto _ : state) {
        song.updateSongText();
        benchmark::DoNotOptimize(song.songText());
    }
    countLines(state);
}

void serialiseBaseline(benchmark::State &state)
{
    QVEditSong song;
    song.buildWithLrcText(lyric(state));
    const QString text = song.songText();
    for (auto _ : state)
        benchmark::DoNotOptimize(Baseline::copyWithRanges(*song.aryLines(), text).constData());
    countLines(state);
}

template <bool HasTag>
void previewText(benchmark::State &state)
{
    QVPreviewSong preview;
    preview.buildWithLrcText(lyric(state));
    for (auto _ : state)
        benchmark::DoNotOptimize(preview.previewSongTextWithHasTag(HasTag).constData());
    countLines(state);
}

template <bool HasTag>
void previewTextBaseline(benchmark::State &state)
{
    QVPreviewSong preview;
    preview.buildWithLrcText(lyric(state));
    const QString text = preview.previewSongTextWithHasTag(HasTag);
    for (auto _ : state)
        benchmark::DoNotOptimize(Baseline::copyWithRanges(*preview.aryLines(), text).constData());
    countLines(state);
}

// Deletes every second line of a document.
template <typename Delete>
void deleteHalf(benchmark::State &state, Delete deleteLines)
{
    std::vector<qsizetype> indexes(std::size_t(state.range(0) / 2));
    std::iota(indexes.begin(), indexes.end(), 0);
    for (qsizetype &index : indexes)
        index *= 2;
    const std::set<quint64> set(indexes.begin(), indexes.end());
    for (auto _ : state) {
        state.PauseTiming();
        QVEditSong song;
        song.buildWithLrcText(lyric(state));
        state.ResumeTiming();
        deleteLines(song, set, indexes);
        benchmark::DoNotOptimize(song.aryLines());
        state.PauseTiming();
        song.aryLines()->clear();
        state.ResumeTiming();
    }
    countLines(state);
}

void deleteSet(benchmark::State &state)
{
    deleteHalf(state, [](QVEditSong &song, const auto &set, const auto &) { song.deleteLineAtIndexs(set); });
}

void deleteSetBaseline(benchmark::State &state)
{
    deleteHalf(state, [](QVEditSong &song, const auto &, const auto &indexes) {
        *song.aryLines() = Baseline::without(*song.aryLines(), indexes);
    });
}

// The number of bytes that are allocated on the heap.
double heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

void memory(benchmark::State &state)
{
    const QString &text = lyric(state);
    for (auto _ : state) {
        const double before = heapBytes();
        QVEditSong song;
        song.buildWithLrcText(text);
        const double document = heapBytes() - before;
        const double songText = double(song.songText().size()) * sizeof(char16_t);
        state.counters["bytes_per_line"] = (document - songText) / double(song.aryLines()->size());
    }
}

void hostile(benchmark::State &state, const QString &piece)
{
    const qsizetype size = state.range(0) * 1024;
    const QString text = piece.repeated(size / piece.size());
    for (auto _ : state) {
        QVEditSong song;
        song.buildWithLrcText(text);
        QVPreviewSong preview;
        preview.buildWithLrcText(text);
        benchmark::DoNotOptimize(song.aryLines());
        benchmark::DoNotOptimize(preview.aryLines());
    }
    state.SetItemsProcessed(state.iterations() * text.size());
}

// The same work on a common lyric, to compare the hostile texts with. An item is a character.
void usual(benchmark::State &state)
{
    hostile(state, lyricText(state.range(0) * 1024 / 30).first(state.range(0) * 1024));
}

const std::pair<const char *, QString> HostilePieces[] = {
    {"spaces", u" "_s},   {"property_keys", u"[aa:"_s}, {"time_starts", u"[00:00.0"_s},
    {"brackets", u"["_s}, {"cjk", u"春高楼の花の宴"_s},
};

} // namespace

int main(int argc, char **argv)
{
    // Keep freed memory, so that the results do not depend on how fast the kernel hands out pages.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());

    const auto perDocument = [](const char *name, void (*run)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, run)->Arg(63)->Arg(4'000)->Arg(300'000);
    };
    perDocument("build", build<QVEditSong>);
    perDocument("build_baseline", buildBaseline);
    perDocument("build_preview", build<QVPreviewSong>);
    perDocument("serialise", serialise);
    perDocument("serialise_baseline", serialiseBaseline);
    perDocument("preview_tags", previewText<true>);
    perDocument("preview_tags_baseline", previewTextBaseline<true>);
    perDocument("preview_bare", previewText<false>);
    perDocument("preview_bare_baseline", previewTextBaseline<false>);
    for (const qint64 lines : {63, 4'000, 100'000, 300'000}) {
        benchmark::RegisterBenchmark("delete_set", deleteSet)->Arg(lines);
        benchmark::RegisterBenchmark("delete_set_baseline", deleteSetBaseline)->Arg(lines);
    }
    benchmark::RegisterBenchmark("memory", memory)->Arg(300'000)->Iterations(1);
    benchmark::RegisterBenchmark("usual", usual)->Arg(256);
    for (const auto &[name, piece] : HostilePieces) {
        benchmark::RegisterBenchmark((std::string("hostile_") + name).c_str(), hostile, piece)
            ->Arg(64)
            ->Arg(128)
            ->Arg(256);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
