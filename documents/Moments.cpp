// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Moments.h"

#include "model/HugePages.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace QVSongLrcPrivate {
namespace {

// Radix sort: each pass takes some bits of the time.
void sortByDigits(std::vector<Moment> &moments, quint64 greatest)
{
    constexpr int BitsPerPass = 11;
    std::vector<Moment> sorted;
    sorted.reserve(moments.size());
    preferHugePages(sorted.data(), qsizetype(moments.size()));
    sorted.resize(moments.size());
    for (int shift = 0; shift < int(std::bit_width(greatest)); shift += BitsPerPass) {
        std::array<std::size_t, std::size_t(1) << BitsPerPass> ends{};
        const auto digit = [shift, &ends](const Moment &moment) -> std::size_t & {
            return ends[std::size_t(moment.milliseconds >> shift) % ends.size()];
        };
        for (const Moment &moment : moments)
            ++digit(moment);
        std::size_t begin = 0;
        for (std::size_t &end : ends)
            begin += std::exchange(end, begin);
        for (const Moment &moment : moments)
            sorted[digit(moment)++] = moment;
        moments.swap(sorted);
    }
}

} // namespace

void sortMoments(std::vector<Moment> &moments)
{
    constexpr std::size_t Few = 1'000;
    if (std::is_sorted(moments.cbegin(), moments.cend(), Moment::isEarlier))
        return;
    if (moments.size() < Few)
        std::stable_sort(moments.begin(), moments.end(), Moment::isEarlier);
    else
        sortByDigits(
            moments,
            quint64(std::max_element(moments.cbegin(), moments.cend(), Moment::isEarlier)->milliseconds));
}

} // namespace QVSongLrcPrivate
