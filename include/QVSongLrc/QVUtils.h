// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

/// Recognises the tags of LRC text, and converts between time tags and times in ms.
///
/// A time tag is "[", one or two digits, ":", one or two digits, any one character, one or two digits, "]",
/// such as "[01:02.50]", "[1:2,5]" or "[01:02:03]". A property tag is "[", two letters a to z, ":", and
/// everything up to the last "]" of the text, such as "[ar:Artist]". A tag may be anywhere in a text, and
/// includes the white space before it.
///
/// All functions may be called from any thread and take time linear in their text.
class QVSONGLRC_CORE_EXPORT QVUtils
{
public:
    QVUtils() = delete;

    /// The time of a time tag, in ms. \p timeTag includes the brackets; its first and last code unit are
    /// ignored, whatever they are.
    ///
    /// The minutes are read from the part before the first ":", the seconds, which may have a decimal
    /// fraction, from the part after the last ":". Without a ":" both are read from the whole. A part is read
    /// up to the first character that does not belong to a number; white space before the number is skipped,
    /// only the digits 0 to 9 count, and a part without a number is 0. The seconds are multiplied by 1000 in
    /// double precision and cut toward zero, so "[00:02.03]" is 2029 ms. Results beyond the range of qint64
    /// become the nearest limit.
    ///
    /// \throws std::out_of_range if \p timeTag has fewer than two code units.
    static qint64 getTimeInterval(const QString &timeTag);

    /// \p milliseconds as "mm:ss.xx". The last millisecond digit is dropped, not rounded. 100 minutes and
    /// more take more than two digits. In a negative time every field but 0 has a sign: -1500 ms is
    /// "00:-1.-50".
    static QString getTimeIntervalMMSSMSStr(qint64 milliseconds);

    /// \p milliseconds as a time tag: getTimeIntervalMMSSMSStr() in brackets.
    static QString getTimeIntervalPeerStr(qint64 milliseconds);

    /// Whether \p text contains a property tag.
    static bool isPropertyString(const QString &text);

    /// Whether \p text contains a time tag.
    static bool isTimeString(const QString &text);
};
