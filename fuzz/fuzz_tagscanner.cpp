// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The tag scanner finds what ICU's regular expressions find, in any sequence of code units, and so do the fast scans.

#include "FuzzText.h"
#include "model/TagScanner.h"
#include "model/TextScan.h"

#include <unicode/regex.h>

#include <vector>

using namespace QVSongLrcPrivate;

namespace {

using Matches = std::vector<std::pair<qsizetype, qsizetype>>;

Matches icuMatches(icu::RegexMatcher &matcher, QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString subject(false, text.utf16(), int32_t(text.size()));
    matcher.reset(subject);
    Matches matches;
    while (matcher.find(status))
        matches.emplace_back(matcher.start(status), matcher.end(status));
    require(U_SUCCESS(status));
    return matches;
}

Matches scannedPropertyTags(QStringView text)
{
    const auto tag = TagScanner::propertyTag(text);
    return tag ? Matches{{tag->begin, tag->end}} : Matches{};
}

Matches scannedTimeTags(QStringView text)
{
    Matches matches;
    while (const auto tag = TagScanner::timeTag(text, matches.empty() ? 0 : matches.back().second))
        matches.emplace_back(tag->begin, tag->end);
    return matches;
}

// The scans for x86-64 and for any processor find the same, and a usual tag is one for ICU, too.
void requireSameScans(const QString &text)
{
    const QString withRoom = text + QString(TextScan::AnyProcessor::Window, u' ');
    const char16_t *const begin = QStringView(withRoom).utf16();
    for (qsizetype i = 0; i < text.size(); ++i) {
        require(TextScan::stops(begin + i) == TextScan::AnyProcessor::stops(begin + i));
        TextScan::UsualTag tag;
        TextScan::UsualTag other;
        const bool isTag = TextScan::readUsualTag(begin + i, tag);
        require(isTag == TextScan::AnyProcessor::readUsualTag(begin + i, other));
        require(tag.minutes == other.minutes && tag.hundredths == other.hundredths);
        const auto found = TagScanner::timeTag(QStringView(withRoom).sliced(i, TextScan::UsualTag::Length));
        require(!isTag || (found && found->begin == 0 && found->end == TextScan::UsualTag::Length));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::uint32_t Flags = UREGEX_DOTALL | UREGEX_MULTILINE;
    static UErrorCode status = U_ZERO_ERROR;
    static icu::RegexMatcher property("\\s*\\[[a-z]{1}[a-z]{1}:.*\\]", Flags, status);
    static icu::RegexMatcher time("\\s*\\[\\d{1,2}:\\d{1,2}.\\d{1,2}\\]", Flags, status);
    require(U_SUCCESS(status));

    const QString text = fuzzText(data, size);
    requireSameScans(text);
    require(scannedPropertyTags(text) == icuMatches(property, text));
    require(scannedTimeTags(text) == icuMatches(time, text));
    return 0;
}
