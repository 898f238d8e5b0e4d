// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "TextFile.h"

#include <QByteArray>

#include <string>

/// Replaces the content of \p file in one step: whatever happens, the file has the old content or the new one. The new
/// content is written to a hidden file beside it, flushed to disk, and renamed. What a killed program left there is
/// removed first.
///
/// The file keeps its mode, owner, group, extended attributes and access control list, and symbolic links to it stay.
/// A file that already has the content is not touched. Devices and pipes are written directly.
///
/// \return whether the content changes.
/// \throws FileRefused, with nothing changed, when the file has several hard links, is not writable, has something that
/// can't be kept, or is being replaced by another program; FileError when it can't be written.
bool replaceFile(const std::string &file, const QByteArray &bytes, Writing writing = Writing::Replace);
