// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ImportTags.h"

#include "TextSurvey.h"
#include "model/TagScanner.h"
#include "model/TimeForm.h"
#include "model/TimeText.h"

#include <QVarLengthArray>

#include <algorithm>

namespace QVSongLrcPrivate::ImportTags {
namespace {

char16_t unitAt(QStringView text, qsizetype at)
{
    return at < text.size() ? text.utf16()[at] : u'\0';
}

bool isSmallLetter(char16_t c)
{
    return c >= u'a' && c <= u'z';
}

// Moves past white space and a sign.
void skipSign(QStringView text, qsizetype &at)
{
    at = skipWhiteSpace(text, at);
    const char16_t c = unitAt(text, at);
    at += c == u'-' || c == u'+' || c == u'\u2212';
}

qsizetype skipDigits(QStringView text, qsizetype &at)
{
    qsizetype count = 0;
    while (TimeForm::readDigit(text, at) >= 0)
        ++count;
    return count;
}

} // namespace

std::optional<DocumentsTag> documentsTag(QStringView line, qsizetype from, qsizetype bracket)
{
    constexpr qsizetype Longest = 17; // digits and the separator may take two code units each
    const QStringView rest = line.sliced(bracket, std::min(Longest, line.size() - bracket));
    const auto tag = TagScanner::timeTag(rest);
    if (!tag || tag->begin != 0)
        return std::nullopt;
    DocumentsTag result;
    result.end = bracket + tag->end;
    const qsizetype begin = from < bracket ? bracket - 1 : bracket;
    result.milliseconds = TimeText::fromTag(line.sliced(begin, result.end - begin));
    QVarLengthArray<char16_t, Longest> ascii;
    for (qsizetype at = 0; at < tag->end;) {
        const char16_t unit = rest.utf16()[at];
        const int digit = TimeForm::readDigit(rest, at);
        ascii.append(digit < 0 ? rest.utf16()[at++] : char16_t(u'0' + digit));
        result.isAscii = result.isAscii && (digit < 0 || unit < 0x80);
    }
    result.digitsTime = TimeText::fromTag(QStringView(ascii.constData(), ascii.size()));
    return result;
}

bool mayBeTime(QStringView line, qsizetype bracket)
{
    const char16_t c = unitAt(line, bracket + 1);
    return c >= 0x80 || (c >= u'0' && c <= u'9');
}

qsizetype likeTime(QStringView line, qsizetype bracket)
{
    qsizetype at = bracket + 1;
    skipSign(line, at);
    const qsizetype minutes = skipDigits(line, at);
    const char16_t separator = unitAt(line, at++);
    const bool isColon = separator == u':' || separator == u'\uff1a';
    if (minutes == 0 || !(isColon || (separator == u'.' && minutes <= 2)))
        return 0;
    skipSign(line, at);
    if (skipDigits(line, at) == 0)
        return 0;
    if (!isColon) { // a time has two points at least
        const bool isPoint = unitAt(line, at++) == u'.';
        if (!isPoint || skipDigits(line, at) == 0)
            return 0;
    }
    for (; at < line.size(); ++at) {
        const char16_t c = line.utf16()[at];
        if (c == u']' || c == u'\uff3d')
            return at + 1 - bracket;
        if (c == u'[' || c == TextSurvey::WideBracketUnit)
            break;
    }
    return 0;
}

bool isProperty(QStringView tag)
{
    const auto isLetter = [tag](qsizetype at) { return isSmallLetter(tag.utf16()[at] | 0x20); };
    if (tag.size() < 5 || !isLetter(1) || !isLetter(2) || tag[3] != u':' || tag.back() != u']')
        return false;
    for (qsizetype close = tag.indexOf(u']'); close + 1 < tag.size(); close = tag.indexOf(u']', close + 1)) {
        if (tag[skipWhiteSpace(tag, close + 1)] == u'[')
            return false;
    }
    return true;
}

bool isOffset(QStringView tag)
{
    constexpr QStringView Start = u"[offset";
    return tag.startsWith(Start, Qt::CaseInsensitive)
        && unitAt(tag, skipWhiteSpace(tag, Start.size())) == u':' && tag.indexOf(u']') == tag.size() - 1;
}

bool beginsWithKey(QStringView text)
{
    return text.front() == u'[' && isSmallLetter(unitAt(text, 1)) && isSmallLetter(unitAt(text, 2))
        && unitAt(text, 3) == u':';
}

qsizetype skipWhiteSpace(QStringView line, qsizetype from)
{
    while (from < line.size() && TagScanner::isWhiteSpace(line.utf16()[from]))
        ++from;
    return from;
}

QStringView withoutTrailingSpace(QStringView text)
{
    while (!text.isEmpty() && TagScanner::isWhiteSpace(text.utf16()[text.size() - 1]))
        text.chop(1);
    return text;
}

} // namespace QVSongLrcPrivate::ImportTags
