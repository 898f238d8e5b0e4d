// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

/// Recognises what an import meets in a line. Indexes are those of the line. Functions that are given a bracket look
/// no farther than the next one, so that looking at all brackets of a line takes linear time.
namespace QVSongLrcPrivate::ImportTags {

/// A tag that the documents take for a time.
struct DocumentsTag
{
    qsizetype end = 0;
    qint64 milliseconds = 0; ///< As the documents read it.
    qint64 digitsTime =
        0; ///< As they would read it if all digits were ASCII and no white space were before it.
    bool isAscii = true; ///< Whether all digits are.
};

/// The tag of the documents at \p bracket, if there is one. White space between \p from and \p bracket belongs to it.
std::optional<DocumentsTag> documentsTag(QStringView line, qsizetype from, qsizetype bracket);

/// Whether what follows \p bracket may be a digit. If not, there is no time.
bool mayBeTime(QStringView line, qsizetype bracket);

/// The length of what looks like a time in brackets at \p bracket, "[" or a full-width one; 0 if nothing does.
qsizetype likeTime(QStringView line, qsizetype bracket);

/// Whether \p tag, which has no white space around it, is one property tag: two letters, of any case, as the key, and
/// no "]" that is followed by another "[".
bool isProperty(QStringView tag);

/// Whether \p tag, which has no white space around it, is an offset header.
bool isOffset(QStringView tag);

/// Whether \p text, which is not empty, begins with "[" and a property key, as the documents know it.
bool beginsWithKey(QStringView text);

/// The index of the first character at or after \p from that is no white space.
qsizetype skipWhiteSpace(QStringView line, qsizetype from);

/// \p text without white space at its end.
QStringView withoutTrailingSpace(QStringView text);

} // namespace QVSongLrcPrivate::ImportTags
