// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <bit>
#include <cstring>

#ifdef __x86_64__
#include <emmintrin.h>
#endif

/// The fast way through LRC text: finds line feeds and brackets, and reads the time tags that nearly every line
/// begins with, many characters at a time. Two versions give the same results: one for x86-64 and one for any
/// processor.
namespace QVSongLrcPrivate::TextScan {

/// A time tag of the usual form, "[mm:ss.xx]" in ASCII digits.
struct UsualTag
{
    static constexpr qsizetype Length = 10;

    quint32 minutes = 0;
    quint32 hundredths = 0; // seconds * 100, up to 9,999

    /// As TimeText::fromTag() reads it.
    qint64 milliseconds() const { return minutes * 60'000 + qint64(double(hundredths) / 100.0 * 1000.0); }

    /// Whether TimeText::writeTag() writes this very tag for the time. "[00:02.03]" is 2,029 ms, for one, which is
    /// written as "[00:02.02]".
    bool isAsWritten() const
    {
        return hundredths < 6'000 && milliseconds() == minutes * 60'000 + hundredths * qint64(10);
    }
};

namespace AnyProcessor {

inline constexpr qsizetype Window = 64;

/// A set bit for every line feed and "[" of the Window code units from \p at.
inline quint64 stops(const char16_t *at)
{
    quint64 bits = 0;
    for (int i = 0; i < Window; ++i)
        bits |= quint64(at[i] == u'\n' || at[i] == u'[') << i;
    return bits;
}

/// Reads a usual tag from the UsualTag::Length code units at \p at. Returns false if there is none.
inline bool readUsualTag(const char16_t *at, UsualTag &tag)
{
    constexpr char16_t Form[] = u"[00:00.00]";
    quint32 digits[UsualTag::Length] = {};
    for (int i = 0; i < UsualTag::Length; ++i) {
        digits[i] = quint32(at[i]) - Form[i];
        if (digits[i] > (Form[i] == u'0' ? 9 : 0))
            return false;
    }
    tag.minutes = digits[1] * 10 + digits[2];
    tag.hundredths = digits[4] * 1'000 + digits[5] * 100 + digits[7] * 10 + digits[8];
    return true;
}

} // namespace AnyProcessor

#ifdef __x86_64__
namespace Sse2 {

using AnyProcessor::Window;

inline quint64 stops(const char16_t *at)
{
    const __m128i lineFeed = _mm_set1_epi16(u'\n');
    const __m128i bracket = _mm_set1_epi16(u'[');
    const auto stopsOf8 = [&](qsizetype i) {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at + i));
        return _mm_or_si128(_mm_cmpeq_epi16(units, lineFeed), _mm_cmpeq_epi16(units, bracket));
    };
    quint64 bits = 0;
    for (int i = 0; i < Window; i += 16) {
        const int stopsOf16 = _mm_movemask_epi8(_mm_packs_epi16(stopsOf8(i), stopsOf8(i + 8)));
        bits |= quint64(quint32(stopsOf16)) << i;
    }
    return bits;
}

inline bool readUsualTag(const char16_t *at, UsualTag &tag)
{
    const __m128i form = _mm_setr_epi16('[', '0', '0', ':', '0', '0', '.', '0');
    const __m128i largest = _mm_setr_epi16(0, 9, 9, 0, 9, 9, 0, 9);
    const __m128i weights = _mm_setr_epi16(0, 10, 1, 0, 1'000, 100, 0, 10);
    const __m128i digits = _mm_sub_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i *>(at)), form);
    const __m128i tooLarge = _mm_subs_epu16(digits, largest);
    const quint32 lastDigit = quint32(at[8]) - u'0';
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(tooLarge, _mm_setzero_si128())) != 0xffff || lastDigit > 9
        || at[9] != u']')
        return false;
    const __m128i sums = _mm_madd_epi16(digits, weights); // of each two products
    const quint64 minutes = quint64(_mm_cvtsi128_si64(sums));
    const quint64 seconds = quint64(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
    tag.minutes = quint32(minutes) + quint32(minutes >> 32);
    tag.hundredths = quint32(seconds) + quint32(seconds >> 32) + lastDigit;
    return true;
}

} // namespace Sse2
using namespace Sse2;
#else
using namespace AnyProcessor;
#endif

/// Finds the line feeds and "[" of a text, one after the other.
class StopFinder
{
public:
    explicit StopFinder(QStringView text)
        : m_end(text.utf16() + text.size())
        , m_window(text.utf16())
    {
        load();
    }

    /// The first line feed or "[" at or after \p from, or the end of the text. \p from must not be before that
    /// of an earlier call.
    const char16_t *find(const char16_t *from)
    {
        if (from - m_window >= Window) {
            m_window = from;
            load();
        } else {
            m_stops &= ~quint64(0) << (from - m_window);
        }
        while (m_stops == 0) {
            if (m_end - m_window <= Window)
                return m_end;
            m_window += Window;
            load();
        }
        return m_window + std::countr_zero(m_stops);
    }

private:
    void load()
    {
        if (m_end - m_window >= Window) {
            m_stops = stops(m_window);
            return;
        }
        char16_t rest[Window] = {};
        if (m_window != m_end)
            std::memcpy(rest, m_window, std::size_t(m_end - m_window) * sizeof(char16_t));
        m_stops = stops(rest);
    }

    const char16_t *m_end;
    const char16_t *m_window; // the Window code units from here are in m_stops
    quint64 m_stops = 0;
};

} // namespace QVSongLrcPrivate::TextScan
