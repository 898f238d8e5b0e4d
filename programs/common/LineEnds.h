// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

/// How the lines of a text end, so that a changed text can be written with the same line ends.
struct LineEnds
{
    QLatin1StringView end{"\n"}; ///< the most frequent of LF, CR LF and CR; LF if two are equally frequent
    bool isLastEnded = true;     ///< whether the last line has an end, too

    static LineEnds of(QStringView text);

    /// \p text, whose lines all end with LF, with these line ends.
    QString applied(const QString &text) const;
};
