// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "RemarkList.h"

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

constexpr char16_t ByteOrderMark = u'\ufeff';

bool isControl(char16_t c)
{
    return (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || (c >= 0x7f && c < 0xa0);
}

// May also be true for a part of a surrogate pair. Without branches, so that compilers make it vector code.
constexpr quint16 mayBeOdd(char16_t c)
{
    return quint16((c < 0x20) & (c != u'\t') & (c != u'\n') & (c != u'\r'))
        | quint16((c >= 0x7f) & (c < 0xa0)) | quint16((c & 0xf800) == 0xd800) | quint16(c == ByteOrderMark);
}

QString characterMessage(char16_t c)
{
    if (c == ByteOrderMark)
        return QStringLiteral("this is a byte order mark; the documents keep it in words");
    return isControl(c) ? QStringLiteral("this is a control character; the documents keep it in words")
                        : QStringLiteral("this is half of a surrogate pair; the documents keep it in words");
}

} // namespace

RemarkList::RemarkList(QStringView text)
    : m_text(text)
{
}

void RemarkList::add(QVLyricRemark::Kind kind, QStringView place, const QString &message)
{
    const quint64 location = quint64(place.utf16() - m_text.utf16());
    m_remarks.append({kind, {location, quint64(place.size())}, 1, 1, message});
}

void RemarkList::addOddCharacters()
{
    constexpr qsizetype Block = 64;
    const char16_t *const units = m_text.utf16();
    qsizetype at = 0;
    for (; at + Block <= m_text.size(); at += Block) {
        quint16 found = 0;
        for (qsizetype i = 0; i < Block; ++i)
            found = quint16(found | mayBeOdd(units[at + i]));
        if (found)
            addOddCharacters(at, at + Block);
    }
    addOddCharacters(at, m_text.size());
    m_oddCharacters = m_remarks.size();
}

void RemarkList::addOddCharacters(qsizetype from, qsizetype to)
{
    const char16_t *const units = m_text.utf16();
    for (qsizetype i = from; i < to; ++i) {
        const char16_t c = units[i];
        if (!mayBeOdd(c))
            continue;
        if (QChar::isHighSurrogate(c) && i + 1 < m_text.size() && QChar::isLowSurrogate(units[i + 1]))
            continue;
        if (QChar::isLowSurrogate(c) && i > 0 && QChar::isHighSurrogate(units[i - 1]))
            continue;
        if (!m_remarks.isEmpty() && m_remarks.constLast().range.end() == quint64(i))
            ++m_remarks.last().range.length;
        else
            add(QVLyricRemark::Kind::Character, m_text.sliced(i, 1), characterMessage(c));
    }
}

QList<QVLyricRemark> RemarkList::take()
{
    std::inplace_merge(
        m_remarks.begin(), m_remarks.begin() + m_oddCharacters, m_remarks.end(),
        [](const QVLyricRemark &a, const QVLyricRemark &b) { return a.range.location < b.range.location; });
    qint64 line = 1;
    qint64 column = 1;
    qsizetype at = 0;
    const char16_t *const units = m_text.utf16();
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
