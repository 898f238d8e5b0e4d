// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "RemarkList.h"

#include "TextSurvey.h"

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

QString characterMessage(char16_t c)
{
    if (c == TextSurvey::ByteOrderMark)
        return QStringLiteral(
            "this is a byte order mark; the documents keep it unless they drop the text around it");
    return !QChar::isSurrogate(c)
        ? QStringLiteral(
            "this is a control character; the documents keep it unless they drop the text around it")
        : QStringLiteral(
            "this is half of a surrogate pair; the documents keep it unless they drop the text around it");
}

} // namespace

RemarkList::RemarkList(const QString &text)
    : m_text(text)
{
}

void RemarkList::add(QVLyricRemark::Kind kind, QStringView place, const QString &message)
{
    const quint64 location = quint64(place.utf16() - QStringView(m_text).utf16());
    m_remarks.append({kind, {location, quint64(place.size())}, 1, 1, message});
}

void RemarkList::addOddCharacters(qsizetype from, qsizetype to)
{
    const char16_t *const units = QStringView(m_text).utf16();
    for (qsizetype i = from; i < to; ++i) {
        const char16_t c = units[i];
        if (!(TextSurvey::findingsIn(c) & TextSurvey::OddCharacter))
            continue;
        if (QChar::isHighSurrogate(c) && i + 1 < m_text.size() && QChar::isLowSurrogate(units[i + 1]))
            continue;
        if (QChar::isLowSurrogate(c) && i > 0 && QChar::isHighSurrogate(units[i - 1]))
            continue;
        if (!m_remarks.isEmpty() && m_remarks.constLast().range.end() == quint64(i))
            ++m_remarks.last().range.length;
        else
            add(QVLyricRemark::Kind::Character, QStringView(m_text).sliced(i, 1), characterMessage(c));
    }
    m_oddCharacters = m_remarks.size();
}

QList<QVLyricRemark> RemarkList::take()
{
    std::inplace_merge(
        m_remarks.begin(), m_remarks.begin() + m_oddCharacters, m_remarks.end(),
        [](const QVLyricRemark &a, const QVLyricRemark &b) { return a.range.location < b.range.location; });
    qint64 line = 1;
    qint64 column = 1;
    qsizetype at = 0;
    const char16_t *const units = QStringView(m_text).utf16();
    const auto isNext = [&](auto isWanted) { return at + 1 < m_text.size() && isWanted(units[at + 1]); };
    for (QVLyricRemark &remark : m_remarks) {
        for (; at < qsizetype(remark.range.location); ++at) {
            const char16_t c = units[at];
            if (c == u'\n' || (c == u'\r' && !isNext([](char16_t next) { return next == u'\n'; }))) {
                ++line;
                column = 1;
            } else if (!(QChar::isHighSurrogate(c)
                         && isNext([](char16_t next) { return QChar::isLowSurrogate(next); }))) {
                ++column;
            }
        }
        remark.line = line;
        remark.column = column;
    }
    return std::move(m_remarks);
}

} // namespace QVSongLrcPrivate
