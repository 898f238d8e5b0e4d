// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

/// The translator of the library's texts. It is installed once for each application object, before the host's
/// translators, so that a host's translation of the same text takes precedence.
namespace QVSongLrcPrivate::Translations {

/// Loads the translation for the languages that QLocale() lists now, unless it is loaded already.
void followUsersLanguage();

} // namespace QVSongLrcPrivate::Translations
