// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/common/TextEncoding.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The file that a song is kept in: its name, how it is written, and what it held when the editor saw it last.
/// A value.
class SongFile
{
public:
    /// Reads \p name; \p text gets its lines with line feeds between them. \throws FileError
    static SongFile read(const QString &name, QString &text);

    /// Replaces the file's content in the file's own encoding and with its own line ends. A file that could
    /// not be written is left as it was. \throws FileError
    void write(const QString &text);

    /// Whether the file's encoding has every character of \p text.
    bool canHold(const QString &text) const;

    /// Whether somebody else has written the file since the editor did.
    bool hasChangedOnDisk() const;

    /// Whether there is no such file any more. It has not changed then: writing it anew loses nothing.
    bool isGone() const;

    /// Absolute; empty for a song without a file.
    QString name() const { return m_name; }
    QString shortName() const; ///< without folders
    void setName(const QString &name);

    QString encodingName() const { return QString::fromLatin1(m_encoding.name); }

    /// Writes in UTF-8 from now on, which has every character.
    void useUtf8() { m_encoding = {}; }

    /// All of it, but for the song's text.
    QJsonObject toJson() const;
    static SongFile fromJson(const QJsonObject &json);

private:
    QString m_name;
    TextEncoding m_encoding;
    bool m_hasCrLf = false;
    QByteArray m_hash; // of the bytes on disk, empty where there are none
};
