// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace QVSongLrcPrivate {

/// \p text, or a copy if it does not own its characters: those of QString::fromRawData() may be gone while
/// the copy is still needed. An absent text stays absent.
inline QString ownedString(const QString &text)
{
    return text.capacity() < text.size() ? QString(text.constData(), text.size()) : text;
}

} // namespace QVSongLrcPrivate
