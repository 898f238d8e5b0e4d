// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>
#include <QVSongLrc/QVTextRange.h>

#include <QString>

#include <optional>

/// Changes the times of single words: word tags such as "<00:12.34>" in the text of a line.
///
/// A word tag is "<", a time with a fraction in one of the forms that QVLyricImport reads, in the digits 0 to 9, and
/// ">". The documents keep word tags as text.
///
/// All functions may be called from any thread and take time linear in their text.
class QVSONGLRC_CORE_EXPORT QVWordTimes
{
public:
    QVWordTimes() = delete;

    /// What happens to a time that a shift makes negative.
    enum class BelowZero {
        Fails,
        BecomesZero,
    };

    /// \p text with \p milliseconds added to the time of every word tag. A shifted tag is written as "<mm:ss.xx>",
    /// with a third digit if the tag has one or the new time needs it, and further digits as the tag has them, or 0
    /// where the time would be negative. An absent text stays absent.
    ///
    /// \return nullopt if a time would be past 9999:59.99, or below 0 with BelowZero::Fails. \p failedAt, unless null,
    /// is then set to the range of the first such tag in \p text.
    static std::optional<QString> shifted(const QString &text, qint64 milliseconds, BelowZero belowZero,
                                          QVTextRange *failedAt = nullptr);
};
