// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVTextRange.h>

#include <QListView>
#include <QStringListModel>

#include <optional>

/// Shows a document's text, and highlights one line. A list view, since it only lays out the visible lines of a
/// long song.
class LyricView : public QListView
{
    Q_OBJECT

public:
    LyricView();

    /// Shows \p text, with nothing highlighted.
    void setLyric(const QString &text);

    /// Highlights the line at \p range, in UTF-16 code units, and scrolls to it.
    void highlight(std::optional<QVTextRange> range);

private:
    QString m_text;
    QStringListModel m_lines;
};
