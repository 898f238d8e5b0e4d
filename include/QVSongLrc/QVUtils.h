// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

/// The grammar of the bracketed tags of LRC text, and the conversions between time tags and times.
///
/// A time tag is "[", one or two digits, ":", one or two digits, any one character, one or two digits, "]":
/// "[01:02.50]", "[1:2,5]" and "[01:02:03]" are time tags. A property tag is "[", two letters a to z, ":",
/// anything, and the text's last "]": "[ar:Artist]". Both are found anywhere in a text, and white space in
/// front of a tag belongs to it.
///
/// Times are milliseconds from the start of the song. Stateless; callable from any thread. Every operation
/// takes time linear in its text, whatever the text.
class QVSONGLRC_CORE_EXPORT QVUtils
{
public:
    QVUtils() = delete;

    /// The time in ms that a time tag, brackets included, stands for.
    ///
    /// The first and the last character are dropped unseen. The minutes are the number that the part before
    /// the first ":" begins with, the seconds (with a decimal fraction) the one after the last ":"; without
    /// a ":" the whole serves as both. White space before a number is skipped, digits are 0 to 9, a part
    /// that begins with no number counts as 0. Seconds are multiplied in double precision and cut toward
    /// zero, so "[00:02.03]" is 2029 ms. Results beyond 64 bits saturate.
    ///
    /// \throws std::out_of_range when \p timeTag has fewer than two code units.
    static qint64 getTimeInterval(const QString &timeTag);

    /// \p milliseconds as "mm:ss.xx". The last millisecond digit is dropped, minutes of 100 and more take
    /// the digits they need, and of a negative time each field other than 0 carries the sign: -1500 ms is
    /// "00:-1.-50".
    static QString getTimeIntervalMMSSMSStr(qint64 milliseconds);

    /// \p milliseconds as a time tag, "[mm:ss.xx]", in the form of getTimeIntervalMMSSMSStr().
    static QString getTimeIntervalPeerStr(qint64 milliseconds);

    /// Whether \p text contains a property tag.
    static bool isPropertyString(const QString &text);

    /// Whether \p text contains a time tag.
    static bool isTimeString(const QString &text);
};
