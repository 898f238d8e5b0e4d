// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// The forms in which lyric files write a time. The documents' grammar, which is narrower, is in TagScanner.
namespace QVSongLrcPrivate::TimeForm {

/// The greatest time, 9999:59.99, in ms.
inline constexpr qint64 Limit = 599'999'990;

/// A time in brackets.
struct Time
{
    qint64 milliseconds = 0;
    qsizetype length = 0;         // with both brackets, in code units
    qsizetype fractionDigits = 0; // 0: a time without a fraction
    QStringView fraction;         // these digits
    bool isAscii = true;          // whether all digits are
};

/// Reads a time of one of the forms
///     m:ss    m:ss.xx    h:mm:ss.xx
/// between the bracket at \p at and the bracket \p close. "," and ":" may stand for ".", and the digits may be those
/// of any script. Minutes have up to 4 digits (2 after hours), hours and seconds up to 2, a fraction has any number of
/// which those after the third do not count. Times past the limit are none. Looks at no more than the time.
std::optional<Time> read(QStringView text, qsizetype at, char16_t close);

/// The value of the decimal digit at \p at, which moves behind it; -1 if there is none.
int readDigit(QStringView text, qsizetype &at);

/// The word tag of \p milliseconds: "<mm:ss.xx>" with a third digit if \p time has one or it is not 0, and the further
/// ones of \p time, or 0 where its fraction is absent.
QString wordTag(qint64 milliseconds, const Time &time);

} // namespace QVSongLrcPrivate::TimeForm
