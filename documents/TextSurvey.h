// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

/// Looks for what few lyrics contain, so that nobody need look for it in every line. The loops have no branches, so
/// that compilers make them vector code.
namespace QVSongLrcPrivate::TextSurvey {

enum Finding : quint16 {
    OddCharacter = 1, ///< A control character other than a tab, a surrogate or a byte order mark.
    CarriageReturn = 2,
    WideBracket = 4, ///< A full-width "[".
};

inline constexpr char16_t ByteOrderMark = u'\ufeff';
inline constexpr char16_t WideBracketUnit = u'\uff3b';

/// What \p c is: flags of Finding.
constexpr quint16 findingsIn(char16_t c)
{
    const quint16 isControl =
        quint16((c < 0x20) & (c != u'\t') & (c != u'\n') & (c != u'\r')) | quint16((c >= 0x7f) & (c < 0xa0));
    const quint16 isOdd = isControl | quint16((c & 0xf800) == 0xd800) | quint16(c == ByteOrderMark);
    return quint16(isOdd | quint16(c == u'\r') << 1 | quint16(c == WideBracketUnit) << 2);
}

/// Cheaper than findingsIn(): whether \p c may be any of them. It may also be a tab and some rare characters.
constexpr quint16 mayBeFinding(char16_t c)
{
    return quint16((quint16((c + 1) & 0xff7f) <= 0x20) & (c != u'\n')) | quint16((c & 0xf800) == 0xd800)
        | quint16((c & 0xfe3b) == (ByteOrderMark & WideBracketUnit));
}

/// Returns what is in \p text: flags of Finding. Calls \p onOdd with the begin and the end of each part that may have
/// odd characters, in order.
template <typename OnOdd>
quint16 findings(QStringView text, OnOdd onOdd)
{
    constexpr qsizetype Block = 64;
    const char16_t *const units = text.utf16();
    quint16 all = 0;
    for (qsizetype begin = 0; begin < text.size(); begin += Block) {
        const qsizetype end = std::min(begin + Block, text.size());
        quint16 found = 0;
        if (end - begin == Block) {
            for (qsizetype i = 0; i < Block; ++i)
                found = quint16(found | mayBeFinding(units[begin + i]));
            if (!found)
                continue;
            found = 0;
            for (qsizetype i = 0; i < Block; ++i)
                found = quint16(found | findingsIn(units[begin + i]));
        } else {
            for (qsizetype i = begin; i < end; ++i)
                found = quint16(found | findingsIn(units[i]));
        }
        if (found & OddCharacter)
            onOdd(begin, end);
        all = quint16(all | found);
    }
    return all;
}

} // namespace QVSongLrcPrivate::TextSurvey
