// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The size of the largest file that is read as a lyric, in bytes.
inline constexpr qint64 MaxLyricSize = 1 << 20;

/// The text of the lyric file \p path, in the encoding that decodeText() detects. Nothing when the file can't be
/// read, is larger than MaxLyricSize or is not text; \p error then holds the reason.
std::optional<QString> readLyricText(const QString &path, QString *error);
