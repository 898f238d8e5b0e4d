// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Moments.h"

#include "model/HugePages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace QVSongLrcPrivate {
namespace {

constexpr auto isEarlier = [](const Moment &a, const Moment &b) { return a.milliseconds < b.milliseconds; };

// A vector that takes `size` moments without another allocation.
std::vector<Moment> roomFor(std::size_t size)
{
    std::vector<Moment> moments;
    moments.reserve(size);
    preferHugePages(moments.data(), qsizetype(size));
    return moments;
}

template <typename IsLess>
std::vector<Moment> merged(const std::vector<Moment> &a, const std::vector<Moment> &b, IsLess isLess)
{
    std::vector<Moment> all = roomFor(a.size() + b.size());
    std::merge(a.cbegin(), a.cend(), b.cbegin(), b.cend(), std::back_inserter(all), isLess);
    return all;
}

// Sorts by 11 bits of the time after the other, which is fast for any order of many moments.
void radixSort(std::vector<Moment> &moments)
{
    constexpr int Bits = 11;
    const auto latest = quint64(std::max_element(moments.cbegin(), moments.cend(), isEarlier)->milliseconds);
    std::vector<Moment> sorted = roomFor(moments.size());
    sorted.resize(moments.size());
    for (int shift = 0; shift < 64 && latest >> shift != 0; shift += Bits) {
        std::array<std::size_t, std::size_t(1) << Bits> places{};
        const auto place = [shift, &places](const Moment &moment) -> std::size_t & {
            return places[std::size_t(quint64(moment.milliseconds) >> shift) % places.size()];
        };
        for (const Moment &moment : moments)
            ++place(moment);
        std::size_t begin = 0;
        for (std::size_t &count : places)
            begin += std::exchange(count, begin);
        for (const Moment &moment : moments)
            sorted[place(moment)++] = moment;
        moments.swap(sorted);
    }
}

} // namespace

std::vector<Moment> sortedMoments(std::vector<Moment> firsts, std::vector<Moment> repeats)
{
    constexpr std::size_t Many = 1'000;
    if (std::is_sorted(firsts.cbegin(), firsts.cend(), isEarlier)) {
        if (repeats.empty())
            return firsts;
        std::stable_sort(repeats.begin(), repeats.end(), isEarlier);
        return merged(firsts, repeats, [](const Moment &a, const Moment &b) {
            return a.milliseconds != b.milliseconds ? a.milliseconds < b.milliseconds : a.index < b.index;
        });
    }
    std::vector<Moment> moments =
        merged(firsts, repeats, [](const Moment &a, const Moment &b) { return a.index < b.index; });
    if (moments.size() < Many)
        std::stable_sort(moments.begin(), moments.end(), isEarlier);
    else
        radixSort(moments);
    return moments;
}

} // namespace QVSongLrcPrivate
