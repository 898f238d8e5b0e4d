// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TimeForm.h"

#include "TimeText.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <limits>

namespace QVSongLrcPrivate::TimeForm {
namespace {

constexpr qsizetype AnyNumber = std::numeric_limits<qsizetype>::max();

struct Digits
{
    qint64 value = 0; // of the first four
    qsizetype count = 0;
    QStringView view;
};

Digits readDigits(QStringView text, qsizetype &at, qsizetype atMost)
{
    Digits digits;
    const qsizetype begin = at;
    while (digits.count < atMost) {
        const int digit = readDigit(text, at);
        if (digit < 0)
            break;
        if (digits.count++ < 4)
            digits.value = digits.value * 10 + digit;
    }
    digits.view = text.sliced(begin, at - begin);
    return digits;
}

qint64 fractionInMilliseconds(const Digits &fraction)
{
    switch (fraction.count) {
    case 1:
        return fraction.value * 100;
    case 2:
        return fraction.value * 10;
    case 3:
        return fraction.value;
    default:
        return fraction.value / 10;
    }
}

bool isSeparator(char16_t c)
{
    return c == u'.' || c == u',' || c == u':';
}

} // namespace

int readDigit(QStringView text, qsizetype &at)
{
    if (at >= text.size())
        return -1;
    const char16_t unit = text.utf16()[at];
    if (unit < 0x80) {
        const bool isDigit = unit >= u'0' && unit <= u'9';
        at += isDigit;
        return isDigit ? unit - u'0' : -1;
    }
    UChar32 codePoint = unit;
    qsizetype next = at + 1;
    if (U16_IS_LEAD(unit) && next < text.size() && U16_IS_TRAIL(text.utf16()[next]))
        codePoint = U16_GET_SUPPLEMENTARY(unit, text.utf16()[next++]);
    const int digit = u_charDigitValue(codePoint);
    if (digit >= 0)
        at = next;
    return digit;
}

std::optional<Time> read(QStringView text, qsizetype at, char16_t close)
{
    const auto next = [text](qsizetype i) { return i < text.size() ? text.utf16()[i] : u'\0'; };
    qsizetype end = at + 1;
    Digits minutes = readDigits(text, end, 4);
    if (minutes.count == 0 || next(end) != u':')
        return std::nullopt;
    Digits seconds = readDigits(text, ++end, 2);
    if (seconds.count == 0)
        return std::nullopt;

    Digits fraction;
    qint64 hours = 0;
    if (isSeparator(next(end))) {
        const bool mayBeHours = next(end) == u':' && minutes.count <= 2;
        fraction = readDigits(text, ++end, AnyNumber);
        if (mayBeHours && (fraction.count == 1 || fraction.count == 2) && isSeparator(next(end))) {
            hours = minutes.value;
            minutes = seconds;
            seconds = fraction;
            fraction = readDigits(text, ++end, AnyNumber);
        }
        if (fraction.count == 0)
            return std::nullopt;
    } else if (seconds.count != 2) { // "[0:1]" may be anything
        return std::nullopt;
    }
    if (next(end) != close)
        return std::nullopt;

    Time time;
    time.milliseconds =
        ((hours * 60 + minutes.value) * 60 + seconds.value) * 1000 + fractionInMilliseconds(fraction);
    if (time.milliseconds > Limit)
        return std::nullopt;
    time.length = end + 1 - at;
    time.fractionDigits = fraction.count;
    time.fraction = fraction.view;
    for (const QChar unit : text.sliced(at, time.length))
        time.isAscii = time.isAscii && unit < u'\x80';
    return time;
}

QString wordTag(qint64 milliseconds, const Time &time)
{
    char16_t buffer[TimeText::MaxTagLength];
    char16_t *const end = TimeText::writeTag(buffer, milliseconds);
    buffer[0] = u'<';
    QString tag = QStringView(buffer, end - 1).toString();
    if (time.fractionDigits > 2 || milliseconds % 10 != 0)
        tag += QChar(char16_t(u'0' + milliseconds % 10));
    qsizetype at = 0;
    for (qsizetype i = 0; i < time.fractionDigits; ++i) {
        const int digit = std::max(readDigit(time.fraction, at), 0);
        if (i >= 3)
            tag += QChar(char16_t(u'0' + digit));
    }
    return tag + u'>';
}

} // namespace QVSongLrcPrivate::TimeForm
