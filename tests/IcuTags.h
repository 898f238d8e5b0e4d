// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

// The tags of a text as ICU's regular expressions and as the scanner find them, to compare the two.

#include "model/TagScanner.h"

#include <unicode/regex.h>

#include <cstdlib>
#include <utility>
#include <vector>

using TagMatches = std::vector<std::pair<qsizetype, qsizetype>>;

class IcuTags
{
public:
    explicit IcuTags(const char *pattern)
        : m_pattern(
            icu::RegexPattern::compile(pattern, UREGEX_DOTALL | UREGEX_MULTILINE, m_parseError, m_status))
    {
        if (U_FAILURE(m_status))
            std::abort();
    }

    TagMatches in(QStringView text) const
    {
        UErrorCode status = U_ZERO_ERROR;
        const icu::UnicodeString subject(false, text.utf16(), int32_t(text.size()));
        const std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->matcher(subject, status));
        TagMatches matches;
        while (matcher->find(status))
            matches.emplace_back(matcher->start(status), matcher->end(status));
        if (U_FAILURE(status))
            std::abort();
        return matches;
    }

    static const IcuTags &property()
    {
        static const IcuTags tags("\\s*\\[[a-z]{1}[a-z]{1}:.*\\]");
        return tags;
    }

    static const IcuTags &time()
    {
        static const IcuTags tags("\\s*\\[\\d{1,2}:\\d{1,2}.\\d{1,2}\\]");
        return tags;
    }

private:
    UErrorCode m_status = U_ZERO_ERROR;
    UParseError m_parseError{};
    std::unique_ptr<icu::RegexPattern> m_pattern;
};

inline TagMatches scannedPropertyTags(QStringView text)
{
    const auto tag = QVSongLrcPrivate::TagScanner::propertyTag(text);
    return tag ? TagMatches{{tag->begin, tag->end}} : TagMatches{};
}

inline TagMatches scannedTimeTags(QStringView text)
{
    TagMatches matches;
    while (const auto tag =
               QVSongLrcPrivate::TagScanner::timeTag(text, matches.empty() ? 0 : matches.back().second))
        matches.emplace_back(tag->begin, tag->end);
    return matches;
}
