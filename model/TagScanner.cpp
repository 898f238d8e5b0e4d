// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TagScanner.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace QVSongLrcPrivate::TagScanner {
namespace {

// The steps below take the place after a piece of the pattern's subject and answer the place after the next
// piece, or null where it does not match. They accept null, so that they chain.

const char16_t *afterDigit(const char16_t *at, const char16_t *end)
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

const char16_t *afterUnit(const char16_t *at, const char16_t *end, char16_t unit)
{
    return at && at != end && *at == unit ? at + 1 : nullptr;
}

// ICU's "." takes a surrogate pair, and also CR LF, as one character.
const char16_t *afterAnyCharacter(const char16_t *at, const char16_t *end)
{
    if (!at || at == end)
        return nullptr;
    const char16_t unit = *at++;
    if (at != end && ((unit == u'\r' && *at == u'\n') || (U16_IS_LEAD(unit) && U16_IS_TRAIL(*at))))
        ++at;
    return at;
}

// ".\d{1,2}\]"
const char16_t *afterHundredths(const char16_t *at, const char16_t *end)
{
    const char16_t *const one = afterDigit(afterAnyCharacter(at, end), end);
    const char16_t *const two = afterDigit(one, end);
    if (const char16_t *const after = afterUnit(two, end, u']'))
        return after;
    return afterUnit(one, end, u']');
}

// "\d{1,2}:\d{1,2}.\d{1,2}\]", from behind the bracket. Where two digits of seconds lead nowhere the second
// one may be the "any character": "[1:234]" is a tag.
const char16_t *afterTimeTag(const char16_t *at, const char16_t *end)
{
    const char16_t *minutes = afterDigit(at, end);
    if (!minutes)
        return nullptr;
    if (const char16_t *const two = afterDigit(minutes, end))
        minutes = two;
    const char16_t *const one = afterDigit(afterUnit(minutes, end, u':'), end);
    const char16_t *const two = afterDigit(one, end);
    if (const char16_t *const after = afterHundredths(two, end))
        return after;
    return afterHundredths(one, end);
}

// "[a-z]{1}[a-z]{1}:", from behind the bracket.
const char16_t *afterPropertyKey(const char16_t *at, const char16_t *end)
{
    const auto isLetter = [](char16_t unit) { return unit >= u'a' && unit <= u'z'; };
    if (end - at < 3 || !isLetter(at[0]) || !isLetter(at[1]))
        return nullptr;
    return afterUnit(at + 2, end, u':');
}

const char16_t *backOverWhiteSpace(const char16_t *at, const char16_t *begin)
{
    while (at != begin && isWhiteSpace(at[-1]))
        --at;
    return at;
}

// The leftmost tag that begins at or after begin: at each bracket, afterBracket tells where a tag ends.
template <typename AfterBracket>
std::optional<Match> findTag(QStringView text, qsizetype from, AfterBracket afterBracket)
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
        if (const char16_t *const after = afterBracket(at, end))
            return Match{backOverWhiteSpace(bracket, begin) - text.utf16(), after - text.utf16()};
    }
    return std::nullopt;
}

} // namespace

std::optional<Match> propertyTag(QStringView text)
{
    // The end of every tag is the same. Looked up at the first key, and not before: most lines have none.
    std::optional<qsizetype> lastClose;
    return findTag(text, 0, [&](const char16_t *at, const char16_t *end) -> const char16_t * {
        const char16_t *const value = afterPropertyKey(at, end);
        if (!value)
            return nullptr;
        if (!lastClose)
            lastClose = text.lastIndexOf(u']');
        return *lastClose >= value - text.utf16() ? text.utf16() + *lastClose + 1 : nullptr;
    });
}

std::optional<Match> timeTag(QStringView text, qsizetype from)
{
    return findTag(text, from, afterTimeTag);
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
