// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace QVSongLrcPrivate {

/// \p text, copied when it does not own its characters (a literal, or QString::fromRawData over a buffer of
/// the caller's that may go first). Absent stays absent.
inline QString ownedString(const QString &text)
{
    return text.capacity() < text.size() ? QString(text.constData(), text.size()) : text;
}

} // namespace QVSongLrcPrivate
