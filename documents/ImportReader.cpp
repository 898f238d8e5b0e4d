// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ImportReader.h"

#include "ImportTags.h"

#include <algorithm>

namespace QVSongLrcPrivate {

ImportReader::ImportReader(QStringView text)
    : m_remarks(text)
    , m_line(m_remarks, text.contains(ImportTags::WideBracket))
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
                QVLyricRemark::Kind::LineEnds, text.sliced(end, endLength),
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

void ImportReader::readLine(QStringView raw)
{
    m_line.read(raw);
    if (m_line.isBlank()) {
        ++m_blankLines;
        return;
    }
    for (; m_blankLines > 0; --m_blankLines) {
        if (!m_lines->isEmpty())
            m_lines->append(QVSongLine::emptyLine());
    }
    QVSongLine &line = *m_lines->emplaceBack(std::make_shared<QVSongLine>());
    line.setLineText(m_line.words().toString());
    if (!m_line.key().isEmpty()) {
        line.setIsProperty(true);
        line.setPropertyStr(m_line.key().toString().toLower());
    }
    for (const qint64 time : m_line.times())
        line.appendTime(time);
}

} // namespace QVSongLrcPrivate
