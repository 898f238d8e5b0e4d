// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ImportedLine.h"

#include "ImportTags.h"
#include "TextSurvey.h"
#include "model/TagScanner.h"
#include "model/TextScan.h"
#include "model/TimeForm.h"

#include <QVSongLrc/QVUtils.h>

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

// The first bracket at or after `from`, -1 if there is none.
qsizetype findBracket(QStringView line, qsizetype from, bool mayBeWide)
{
    if (!mayBeWide)
        return line.indexOf(u'[', from);
    const auto found = std::find_if(line.begin() + from, line.end(),
                                    [](QChar c) { return c == u'[' || c == TextSurvey::WideBracketUnit; });
    return found == line.end() ? -1 : found - line.begin();
}

QString takenForWords()
{
    return QStringLiteral("the documents take this time for words");
}

QString tagAmongWords()
{
    return QStringLiteral("the documents take this for a time of the line, and drop the words before it");
}

} // namespace

ImportedLine::ImportedLine(RemarkList &remarks, bool mayHaveWideBrackets)
    : m_remarks(remarks)
    , m_mayHaveWideBrackets(mayHaveWideBrackets)
{
}

void ImportedLine::read(QStringView raw)
{
    QStringView line = raw;
    while (!line.isEmpty() && line.front() == TextSurvey::ByteOrderMark)
        line = line.sliced(1);
    m_isBlank = false;
    m_key = {};
    m_times.clear();
    m_rewritten.clear();
    const qsizetype from = readTimes(line);
    if (from == 0) {
        const qsizetype begin = ImportTags::skipWhiteSpace(line, 0);
        m_isBlank = begin == line.size();
        if (m_isBlank || (line[begin] == u'[' && readProperty(line, begin)))
            return;
    }
    readWords(line, from);
}

// Reads the time tags that the line begins with, and returns the end of the last one.
qsizetype ImportedLine::readTimes(QStringView line)
{
    qsizetype from = 0;
    for (;;) {
        const qsizetype bracket = ImportTags::skipWhiteSpace(line, from);
        if (bracket == line.size() || line[bracket] != u'[')
            return from;
        const qsizetype end = readTime(line, from, bracket);
        if (end < 0)
            return from;
        from = end;
    }
}

// Reads the time tag at `bracket`, and returns the end of it; -1 if there is none. The last one ended at `from`.
qsizetype ImportedLine::readTime(QStringView line, qsizetype from, qsizetype bracket)
{
    constexpr qint64 Minute = 60'000;
    TextScan::UsualTag usual;
    if (line.size() - bracket >= usual.Length && TextScan::readUsualTag(line.utf16() + bracket, usual)
        && (from == bracket || usual.minutes == 0)) {
        m_times.append(usual.minutes * Minute + usual.hundredths * qint64(10));
        return bracket + usual.Length;
    }
    if (!ImportTags::mayBeTime(line, bracket))
        return -1;
    const auto time = TimeForm::read(line, bracket, u']');
    const auto documents = ImportTags::documentsTag(line, from, bracket);
    if (!time && !documents)
        return -1;
    const qsizetype end = time ? bracket + time->length : documents->end;
    const qint64 milliseconds = time ? time->milliseconds : documents->digitsTime;
    m_times.append(milliseconds);

    const QStringView place = line.sliced(bracket, end - bracket);
    const bool isAscii = time ? time->isAscii : documents->isAscii;
    // Their arithmetic loses a millisecond in some seconds.
    const auto isSame = [milliseconds](qint64 other) {
        return other == milliseconds || other == milliseconds - 1;
    };
    if (milliseconds % 10 != 0)
        m_remarks.add(
            Kind::Hundredths, place,
            QStringLiteral("the documents take this time for words; its thousandths are lost in writing"));
    else if (!documents)
        m_remarks.add(Kind::TimeForm, place, takenForWords());
    else if (documents->end != end)
        m_remarks.add(Kind::TimeForm, place,
                      QStringLiteral("the documents take words behind this time for a part of it"));
    else if (!isSame(documents->milliseconds) || !isAscii)
        m_remarks.add(Kind::TimeForm, place,
                      QStringLiteral("the documents read this time as ")
                          + QVUtils::getTimeIntervalMMSSMSStr(documents->milliseconds));
    return end;
}

// Reads a line whose first character is a bracket as a property. Returns whether it is one.
bool ImportedLine::readProperty(QStringView line, qsizetype bracket)
{
    const QStringView tag = ImportTags::withoutTrailingSpace(line.sliced(bracket));
    if (!ImportTags::isProperty(tag)) {
        if (ImportTags::isOffset(tag))
            m_remarks.add(Kind::Offset, tag,
                          QStringLiteral("the documents take an offset for words; nothing applies it"));
        return false;
    }
    m_key = tag.sliced(1, 2);
    const QStringView value = tag.sliced(4, tag.size() - 5);
    const auto remark = [&](const QString &message) { m_remarks.add(Kind::Property, tag, message); };
    if (const auto documents = TagScanner::propertyTag(line); !documents) {
        remark(QStringLiteral("the documents take this property for words"));
    } else {
        const auto read =
            TagScanner::splitProperty(line.sliced(documents->begin, documents->end - documents->begin));
        if (read.value.isEmpty())
            remark(QStringLiteral(
                "the documents read this line twice, as a property without a value and as words"));
        else if (read.key.contains(u'['))
            remark(QStringLiteral(
                "the documents take the bracket into the key, because of the white space before it"));
        else if (read.value != value)
            remark(QStringLiteral("the documents read only a part of this as a property"));
    }
    m_words = value;
    return true;
}

// Reads the words of the line from `from`. A time with a fraction among them becomes a word tag, and the line's time if
// the line has none.
void ImportedLine::readWords(QStringView line, qsizetype from)
{
    m_words = line.sliced(from);
    qsizetype copied = from; // up to here
    bool mayHaveProperty = true;
    qsizetype next = from;
    for (qsizetype at = findBracket(line, from, m_mayHaveWideBrackets); at >= 0;
         at = findBracket(line, next, m_mayHaveWideBrackets)) {
        next = at + 1;
        const bool isTime = line[at] == u'[' && ImportTags::mayBeTime(line, at);
        const auto time = isTime ? TimeForm::read(line, at, u']') : std::nullopt;
        const auto documents = isTime ? ImportTags::documentsTag(line, at, at) : std::nullopt;
        if (time && time->fractionDigits > 0) {
            next = at + time->length;
            m_remarks.add(Kind::WordTime, line.sliced(at, time->length),
                          documents ? tagAmongWords() : takenForWords());
            if (m_times.isEmpty())
                m_times.append(time->milliseconds);
            m_rewritten += line.sliced(copied, at - copied);
            m_rewritten += TimeForm::wordTag(time->milliseconds, *time);
            copied = next;
        } else if (documents) {
            next = documents->end;
            m_remarks.add(Kind::NoTime, line.sliced(at, next - at), tagAmongWords());
        } else if (time) {
            next = at + time->length;
        } else if (const qsizetype length = ImportTags::likeTime(line, at)) {
            m_remarks.add(
                Kind::NoTime, line.sliced(at, length),
                QStringLiteral("this looks like a time and is none; the documents take it for words, too"));
        } else if (mayHaveProperty && ImportTags::beginsWithKey(line.sliced(at))) {
            mayHaveProperty = false;
            remarkOnProperty(line.sliced(at));
        }
    }
    if (isRewritten())
        m_rewritten += line.sliced(copied);
}

// Remarks on the property that the documents see in a line that is none, where \p tags begins.
void ImportedLine::remarkOnProperty(QStringView tags)
{
    const auto tag = TagScanner::propertyTag(tags);
    if (!tag)
        return;
    const QStringView place = tags.first(tag->end);
    m_remarks.add(
        Kind::Property, place,
        TagScanner::splitProperty(place).value.isEmpty()
            ? QStringLiteral("the documents read this line twice, as this property and without it")
            : QStringLiteral("the documents take this for a property, and drop the rest of the line"));
}

} // namespace QVSongLrcPrivate
