// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/common/LineEnds.h"
#include "programs/common/TextEncoding.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// A song's file: its name, encoding and line ends, and a hash of its last known content. A value.
class SongFile
{
public:
    /// Reads \p name and sets \p text to its content. \throws FileError
    static SongFile read(const QString &name, QString &text);

    /// Replaces the file's content by content(\p text), in the file's encoding. \throws FileError; the file stays as it
    /// was.
    void write(const QString &text);

    /// \p text, whose lines end with line feeds, with the file's line ends.
    QString content(const QString &text) const { return m_lineEnds.applied(text); }

    /// Whether the file's encoding has every character of \p text.
    bool canHold(const QString &text) const;

    /// Whether the file's content differs from what was last read or written here.
    bool hasChangedOnDisk() const;

    /// Whether the file no longer exists. It does not count as changed then: writing it loses nothing.
    bool isGone() const;

    /// Absolute; empty for a song without a file.
    QString name() const { return m_name; }
    QString shortName() const; ///< without the folder
    void setName(const QString &name);

    QString encodingName() const { return QString::fromLatin1(m_encoding.name); }
    bool isEncodingGuessed() const { return m_isEncodingGuessed; }

    /// Writes in UTF-8 from now on.
    void useUtf8() { m_encoding = {}; }

    /// All of it, for a recovery file. The song's text is not included.
    QJsonObject toJson() const;
    static SongFile fromJson(const QJsonObject &json);

private:
    QString m_name;
    TextEncoding m_encoding;
    bool m_isEncodingGuessed = false;
    LineEnds m_lineEnds;
    QByteArray m_hash; // of the bytes on disk; empty without a file
};
