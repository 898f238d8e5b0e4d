// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ImportReader.h"

#include "ImportTags.h"
#include "model/TagScanner.h"
#include "model/TimeForm.h"

#include <QVSongLrc/QVUtils.h>

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

constexpr char16_t ByteOrderMark = u'\ufeff';
constexpr char16_t WideBracket = u'\uff3b';

// Reads a tag "[mm:ss.xx]" in ASCII digits, as nearly all are, at \p at. Returns -1 for any other.
qint64 usualTime(QStringView line, qsizetype at)
{
    constexpr char16_t Form[] = u"[00:00.00]";
    constexpr qsizetype Length = 10;
    if (line.size() - at < Length)
        return -1;
    const char16_t *const units = line.utf16() + at;
    qint64 digits[Length];
    bool isUsual = true;
    for (qsizetype i = 0; i < Length; ++i) {
        digits[i] = units[i] - Form[i];
        isUsual = isUsual && digits[i] >= 0 && digits[i] <= (Form[i] == u'0' ? 9 : 0);
    }
    if (!isUsual)
        return -1;
    return (digits[1] * 10 + digits[2]) * 60'000 + (digits[4] * 10 + digits[5]) * 1'000 + digits[7] * 100
        + digits[8] * 10;
}

// The first bracket at or after `from`, -1 if there is none.
qsizetype findBracket(QStringView line, qsizetype from, bool isMaybeWide)
{
    if (!isMaybeWide)
        return line.indexOf(u'[', from);
    const auto found =
        std::find_if(line.begin() + from, line.end(), [](QChar c) { return c == u'[' || c == WideBracket; });
    return found == line.end() ? -1 : found - line.begin();
}

} // namespace

ImportReader::ImportReader(QStringView text)
    : m_remarks(text)
    , m_hasWideBrackets(text.contains(WideBracket))
{
    m_remarks.addOddCharacters();
    const auto find = [text](char16_t c, qsizetype from) {
        const qsizetype at = text.indexOf(c, from);
        return at < 0 ? text.size() : at;
    };
    qsizetype lineFeed = find(u'\n', 0);
    qsizetype carriageReturn = find(u'\r', 0);
    qsizetype usualEnd = 0; // length of the first line end; -1 when there is a remark
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype end = std::min(lineFeed, carriageReturn);
        readLine(text.sliced(begin, end - begin));
        if (end == text.size())
            break;
        const bool isPair = carriageReturn + 1 == lineFeed && lineFeed < text.size();
        const qsizetype endLength = isPair ? 2 : 1;
        if (usualEnd == 0)
            usualEnd = endLength;
        if (usualEnd > 0 && (endLength != usualEnd || (endLength == 1 && end == carriageReturn))) {
            m_remarks.add(
                Kind::LineEnds, text.sliced(end, endLength),
                QStringLiteral("line ends differ or are carriage returns alone; the documents end lines at "
                               "line feeds only"));
            usualEnd = -1;
        }
        begin = end + endLength;
        if (lineFeed < begin)
            lineFeed = find(u'\n', begin);
        if (carriageReturn < begin)
            carriageReturn = find(u'\r', begin);
    }
}

void ImportReader::readLine(QStringView line)
{
    while (!line.isEmpty() && line.front() == ByteOrderMark)
        line = line.sliced(1);
    m_times.clear();
    const qsizetype from = readTimes(line);
    if (from == 0) {
        const qsizetype begin = ImportTags::skipWhiteSpace(line, 0);
        if (begin == line.size()) {
            ++m_blankLines;
            return;
        }
        if (line[begin] == u'[' && readProperty(line, begin))
            return;
    }
    const QString words = readWords(line, from);
    QVSongLine &songLine = appendLine(words);
    for (const qint64 time : m_times)
        songLine.appendTime(time);
}

// Reads the time tags that the line begins with, and returns the end of the last one.
qsizetype ImportReader::readTimes(QStringView line)
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
qsizetype ImportReader::readTime(QStringView line, qsizetype from, qsizetype bracket)
{
    constexpr qint64 Minute = 60'000;
    const qint64 usual = usualTime(line, bracket);
    if (usual >= 0 && (from == bracket || usual < Minute)) {
        m_times.append(usual);
        return bracket + 10;
    }
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
        m_remarks.add(Kind::TimeForm, place, QStringLiteral("the documents take this time for words"));
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
bool ImportReader::readProperty(QStringView line, qsizetype bracket)
{
    const QStringView tag = ImportTags::withoutTrailingSpace(line.sliced(bracket));
    if (!ImportTags::isProperty(tag)) {
        if (ImportTags::isOffset(tag))
            m_remarks.add(Kind::Offset, tag,
                          QStringLiteral("the documents take an offset for words; nothing applies it"));
        return false;
    }
    const QString key = tag.sliced(1, 2).toString().toLower();
    const QStringView value = tag.sliced(4, tag.size() - 5);
    if (const auto documents = TagScanner::propertyTag(line); !documents) {
        m_remarks.add(Kind::Property, tag, QStringLiteral("the documents take this property for words"));
    } else {
        const auto read =
            TagScanner::splitProperty(line.sliced(documents->begin, documents->end - documents->begin));
        if (read.value.isEmpty())
            m_remarks.add(
                Kind::Property, tag,
                QStringLiteral(
                    "the documents read this line twice, as a property without a value and as words"));
        else if (read.key != key)
            m_remarks.add(Kind::Property, tag, QStringLiteral("the documents read another key"));
        else if (read.value != value)
            m_remarks.add(Kind::Property, tag,
                          QStringLiteral("the documents cut the value off before its first colon, with the "
                                         "character before that"));
    }
    QVSongLine &property = appendLine(value.toString());
    property.setIsProperty(true);
    property.setPropertyStr(key);
    return true;
}

// The words of the line from `from`. A time with a fraction among them becomes a word tag, and the line's time if the
// line has none.
QString ImportReader::readWords(QStringView line, qsizetype from)
{
    QString words;
    qsizetype copied = from; // up to here
    bool mayHaveProperty = true;
    qsizetype next = from;
    for (qsizetype at = findBracket(line, from, m_hasWideBrackets); at >= 0;
         at = findBracket(line, next, m_hasWideBrackets)) {
        next = at + 1;
        const bool isBracket = line[at] == u'[';
        const auto time = isBracket ? TimeForm::read(line, at, u']') : std::nullopt;
        const auto documents = isBracket ? ImportTags::documentsTag(line, at, at) : std::nullopt;
        if (time && time->fractionDigits > 0) {
            next = at + time->length;
            m_remarks.add(Kind::WordTime, line.sliced(at, time->length),
                          documents ? QStringLiteral(
                              "the documents take this for a time of the line, and drop the words before it")
                                    : QStringLiteral("the documents take this time for words"));
            if (m_times.isEmpty())
                m_times.append(time->milliseconds);
            words += line.sliced(copied, at - copied);
            words += TimeForm::wordTag(time->milliseconds, *time);
            copied = next;
        } else if (documents) {
            next = documents->end;
            m_remarks.add(
                Kind::NoTime, line.sliced(at, next - at),
                QStringLiteral(
                    "the documents take this for a time of the line, and drop the words before it"));
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
    if (copied == from)
        return line.sliced(from).toString();
    words += line.sliced(copied);
    return words;
}

// Remarks on the property that the documents see in a line that is none, where \p tags begins.
void ImportReader::remarkOnProperty(QStringView tags)
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

QVSongLine &ImportReader::appendLine(const QString &text)
{
    for (; m_blankLines > 0; --m_blankLines) {
        if (!m_lines->isEmpty())
            m_lines->append(QVSongLine::emptyLine());
    }
    QVSongLine &line = *m_lines->emplaceBack(std::make_shared<QVSongLine>());
    line.setLineText(text);
    return line;
}

} // namespace QVSongLrcPrivate
