// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

/// The library's texts in the languages that it speaks. They are installed once an application object, before
/// any translators of the host's, so that a text of the host's in the same context comes first.
namespace QVSongLrcPrivate::Translations {

/// Goes over to the user's language as QLocale() has it now, unless it is the one spoken already.
void followUsersLanguage();

} // namespace QVSongLrcPrivate::Translations
