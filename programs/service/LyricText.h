// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The largest file that is taken for a lyric, in bytes.
inline constexpr qint64 MaxLyricSize = 1 << 20;

/// The text of the lyric file \p path: UTF-8 with or without a mark, UTF-16 with a mark, else in the encoding
/// that its bytes look most like. Nothing when the file can't be read, is larger than MaxLyricSize or is no
/// text; \p error then says which.
std::optional<QString> readLyricText(const QString &path, QString *error);
