// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TagScanner.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace QVSongLrcPrivate::TagScanner {
namespace {

// Each of these functions matches a piece of a pattern at `at`, and returns the end of the match, or null if
// there is none. Most return null for a null `at`, so that calls can be nested.

const char16_t *matchDigit(const char16_t *at, const char16_t *end)
{
    if (!at || at == end)
        return nullptr;
    const char16_t unit = *at++;
    if (unit < 0x80)
        return unit >= u'0' && unit <= u'9' ? at : nullptr;
    UChar32 codePoint = unit;
    if (U16_IS_LEAD(unit) && at != end && U16_IS_TRAIL(*at))
        codePoint = U16_GET_SUPPLEMENTARY(unit, *at++);
    return u_isdigit(codePoint) ? at : nullptr;
}

const char16_t *matchUnit(const char16_t *at, const char16_t *end, char16_t unit)
{
    return at && at != end && *at == unit ? at + 1 : nullptr;
}

// For ICU's ".", a surrogate pair is one character, and so is CR LF.
const char16_t *matchAnyCharacter(const char16_t *at, const char16_t *end)
{
    if (!at || at == end)
        return nullptr;
    const char16_t unit = *at++;
    if (at != end && ((unit == u'\r' && *at == u'\n') || (U16_IS_LEAD(unit) && U16_IS_TRAIL(*at))))
        ++at;
    return at;
}

// ".\d{1,2}\]"
const char16_t *matchHundredths(const char16_t *at, const char16_t *end)
{
    const char16_t *const one = matchDigit(matchAnyCharacter(at, end), end);
    const char16_t *const two = matchDigit(one, end);
    if (const char16_t *const after = matchUnit(two, end, u']'))
        return after;
    return matchUnit(one, end, u']');
}

// "\d{1,2}:\d{1,2}.\d{1,2}\]", after the bracket. If there is no match with two digits of seconds, the second
// digit may be the "any character": "[1:234]" is a tag.
const char16_t *matchTimeTag(const char16_t *at, const char16_t *end)
{
    const char16_t *minutes = matchDigit(at, end);
    if (!minutes)
        return nullptr;
    if (const char16_t *const two = matchDigit(minutes, end))
        minutes = two;
    const char16_t *const one = matchDigit(matchUnit(minutes, end, u':'), end);
    const char16_t *const two = matchDigit(one, end);
    if (const char16_t *const after = matchHundredths(two, end))
        return after;
    return matchHundredths(one, end);
}

// "[a-z]{1}[a-z]{1}:", after the bracket.
const char16_t *matchPropertyKey(const char16_t *at, const char16_t *end)
{
    const auto isLetter = [](char16_t unit) { return unit >= u'a' && unit <= u'z'; };
    if (end - at < 3 || !isLetter(at[0]) || !isLetter(at[1]))
        return nullptr;
    return matchUnit(at + 2, end, u':');
}

const char16_t *skipWhiteSpaceBackwards(const char16_t *at, const char16_t *begin)
{
    while (at != begin && isWhiteSpace(at[-1]))
        --at;
    return at;
}

// The leftmost tag that begins at or after `from`. matchTag(at, end) matches what follows a tag's opening
// bracket.
template <typename MatchTag>
std::optional<Match> findTag(QStringView text, qsizetype from, MatchTag matchTag)
{
    const char16_t *const begin = text.utf16() + from;
    const char16_t *const end = text.utf16() + text.size();
    for (const char16_t *at = begin; at != end;) {
        if (*at != u'[') {
            const qsizetype bracket = text.indexOf(u'[', at - text.utf16());
            if (bracket < 0)
                break;
            at = text.utf16() + bracket;
        }
        const char16_t *const bracket = at++;
        if (const char16_t *const after = matchTag(at, end))
            return Match{skipWhiteSpaceBackwards(bracket, begin) - text.utf16(), after - text.utf16()};
    }
    return std::nullopt;
}

} // namespace

std::optional<Match> propertyTag(QStringView text)
{
    // Every tag ends at the last "]". It is only looked up once a key is found, since most lines have none.
    std::optional<qsizetype> lastClose;
    return findTag(text, 0, [&](const char16_t *at, const char16_t *end) -> const char16_t * {
        const char16_t *const value = matchPropertyKey(at, end);
        if (!value)
            return nullptr;
        if (!lastClose)
            lastClose = text.lastIndexOf(u']');
        return *lastClose >= value - text.utf16() ? text.utf16() + *lastClose + 1 : nullptr;
    });
}

std::optional<Match> timeTag(QStringView text, qsizetype from)
{
    return findTag(text, from, matchTimeTag);
}

Property splitProperty(QStringView text)
{
    const qsizetype colon = text.indexOf(u':');
    QStringView key = text.first(colon);
    QStringView value = text.sliced(colon + 1);
    if (const qsizetype next = value.indexOf(u':'); next >= 0)
        value.truncate(next);
    return {key.sliced(key.isEmpty() ? 0 : 1), value.chopped(value.isEmpty() ? 0 : 1)};
}

bool isWhiteSpace(char16_t c)
{
    if (c < 0x80)
        return c == u' ' || (c >= u'\t' && c <= u'\r');
    return u_isUWhiteSpace(c);
}

} // namespace QVSongLrcPrivate::TagScanner
