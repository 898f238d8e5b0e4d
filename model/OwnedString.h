// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace QVSongLrcPrivate {

/// \p text, or a copy of it if the characters belong to someone who may free them (QString::fromRawData()).
/// An absent text stays absent.
inline QString ownedString(const QString &text)
{
    return text.capacity() < text.size() ? QString(text.constData(), text.size()) : text;
}

} // namespace QVSongLrcPrivate
