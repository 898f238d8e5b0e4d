// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ImportReader.h"

#include "LyricReader.h"
#include "TextSurvey.h"
#include "model/OwnedString.h"

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

using TextScan::UsualTag;

} // namespace

ImportReader::ImportReader(const QString &text)
    : m_original(text)
    , m_text(ownedString(text))
    , m_lines(expectedLines(text))
    , m_remarks(m_text)
    , m_findings(survey())
    , m_line(m_remarks, m_findings & TextSurvey::WideBracket)
{
    if (m_findings & TextSurvey::CarriageReturn)
        replaceCarriageReturns();
    readLines();
}

quint16 ImportReader::survey()
{
    return TextSurvey::findings(
        m_text, [this](qsizetype from, qsizetype to) { m_remarks.addOddCharacters(from, to); });
}

// Replaces carriage returns alone by line feeds.
void ImportReader::replaceCarriageReturns()
{
    for (qsizetype at = m_original.indexOf(u'\r'); at >= 0; at = m_original.indexOf(u'\r', at + 1)) {
        if (at + 1 == m_original.size() || m_original[at + 1] != u'\n')
            m_text[at] = u'\n';
    }
}

void ImportReader::readLines()
{
    const QStringView text = m_text;
    const bool hasWideBrackets = m_findings & TextSurvey::WideBracket;
    TextScan::StopFinder stops(text);
    const char16_t *const end = text.utf16() + text.size();
    for (const char16_t *at = text.utf16(); at != end;) {
        const char16_t *const begin = at;
        m_tags.clear();
        UsualTag tag;
        while (end - at >= UsualTag::Length && *at == u'[' && TextScan::readUsualTag(at, tag)) {
            at += UsualTag::Length;
            m_tags.append(tag);
        }
        const qsizetype tagsLength = at - begin;
        at = stops.find(at);
        const bool isUsual = tagsLength > 0 && (at == end || *at != u'[') && !hasWideBrackets;
        while (at != end && *at == u'[')
            at = stops.find(at + 1);
        const bool endsInPair = at != end && at != begin && at[-1] == u'\r';
        const char16_t *const lineEnd = at - (endsInPair ? 1 : 0);
        if (isUsual)
            appendUsual({begin, lineEnd}, tagsLength);
        else
            appendAny({begin, lineEnd});
        if (at != end)
            remarkOnLineEnd({lineEnd, ++at});
    }
}

// Remarks once: on a line end that differs from the first one, or is a carriage return alone.
void ImportReader::remarkOnLineEnd(QStringView lineEnd)
{
    if (m_lineEnd < 0)
        return;
    if (m_lineEnd == 0)
        m_lineEnd = lineEnd.size();
    const bool isCarriageReturn = lineEnd.size() == 1 && m_original[positionOf(lineEnd)] == u'\r';
    if (lineEnd.size() == m_lineEnd && !isCarriageReturn)
        return;
    m_lineEnd = -1;
    m_remarks.add(
        QVLyricRemark::Kind::LineEnds, lineEnd,
        QStringLiteral(
            "line ends differ or are carriage returns alone; the documents end lines at line feeds only"));
}

// Appends a line that has no brackets but those of usual tags at its start.
void ImportReader::appendUsual(QStringView line, qsizetype tagsLength)
{
    bool isDisplay = true;
    for (const UsualTag &tag : m_tags)
        isDisplay = isDisplay && tag.hundredths < 6'000;
    const QStringView words = line.sliced(tagsLength);
    QVSongLine &songLine = append({positionOf(words), words, isDisplay ? tagsLength : 0, {}, isDisplay});
    for (const UsualTag &tag : m_tags)
        LineBlocks::addTime(songLine, tag.minutes * qint64(60'000) + tag.hundredths * qint64(10));
}

void ImportReader::appendAny(QStringView raw)
{
    m_line.read(raw);
    if (m_line.isBlank()) {
        m_blankLines += m_blankLines >= 0;
        return;
    }
    const QStringView words = m_line.isRewritten() ? QStringView() : m_line.words();
    const qsizetype position = m_line.isRewritten() ? 0 : positionOf(words);
    if (m_line.key().isEmpty()) {
        QVSongLine &line = append({position, words, 0, {}, m_line.times().isEmpty()});
        if (m_line.isRewritten())
            line.setLineText(m_line.words().toString());
        for (const qint64 time : m_line.times())
            LineBlocks::addTime(line, time);
        return;
    }
    constexpr qsizetype KeyLength = 4; // "[ti:"
    QVSongLine &line = append({position, words, KeyLength, m_line.key(), true});
    if (!m_line.isSmallKey())
        line.setPropertyStr(m_line.key().toString().toLower());
}

QVSongLine &ImportReader::append(const LineSlice &slice)
{
    for (; m_blankLines > 0; --m_blankLines)
        m_lines.append({0, QStringView(m_text).first(0), 0, {}, true}, {});
    m_blankLines = 0;
    return m_lines.append(slice, {});
}

qsizetype ImportReader::positionOf(QStringView part) const
{
    return part.utf16() - QStringView(m_text).utf16();
}

} // namespace QVSongLrcPrivate
