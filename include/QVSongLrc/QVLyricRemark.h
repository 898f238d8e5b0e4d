// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>
#include <QVSongLrc/QVTextRange.h>

#include <QString>

/// A place of a lyric text that QVLyricImport reads otherwise than the documents do, or that a person should look at.
struct QVSONGLRC_CORE_EXPORT QVLyricRemark
{
    /// What is remarkable about the place. All kinds but Offset and Character are warnings.
    enum class Kind {
        LineEnds, ///< The line ends differ from each other, or are carriage returns alone. Once a text.
        Property, ///< A property tag that the documents take for another property, or do not take for one, or a
                  ///< text that only the documents take for one.
        TimeForm, ///< A time tag that the documents read as text or as another time, or whose digits are not ASCII.
        Hundredths, ///< Like TimeForm; and writing the time drops its last digit, because tags have hundredths.
        WordTime,   ///< A time tag within the words, which becomes a word tag.
        NoTime,     ///< Text that looks like a time tag, or that only the documents take for one.
        Offset,     ///< An offset header, which nothing applies.
        Character, ///< A control character, a lone surrogate or a byte order mark.
    };

    Kind kind = Kind::LineEnds; ///< What is remarkable.
    QVTextRange range;          ///< The place in the imported text, in UTF-16 code units.
    qint64 line = 1;            ///< The line in which the place begins, from 1. LF, CR LF and CR end a line.
    qint64 column = 1;          ///< The column at which the place begins, from 1, in code points.

    /// A sentence in English, without a full stop, that says what the documents make of the place.
    QString message;

    /// Whether the documents read other words, times or properties, or a person should look: text that looks like a
    /// time and is none may be a mistake. Notes (the other remarks) change neither words nor times.
    bool isWarning() const { return kind != Kind::Offset && kind != Kind::Character; }

    /// The name of \p kind, which never changes: "line-ends", "property", "time-form", "hundredths", "word-time",
    /// "no-time", "offset" or "character".
    static QString name(Kind kind);
};
