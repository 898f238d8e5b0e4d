// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVTextRange.h>

#include <QListView>
#include <QStringListModel>

#include <optional>

/// Shows a text that a document wrote, line by line, and highlights a line of it by the line's range. A list of
/// lines only ever looks at those in view, which with long songs a text widget does not.
class LyricView : public QListView
{
    Q_OBJECT

public:
    explicit LyricView(QWidget *parent = nullptr);

    /// Shows \p text, with nothing highlighted.
    void setLyric(const QString &text);

    /// Highlights the line that lies at \p range, in UTF-16 code units, and brings it into view.
    void highlight(std::optional<QVTextRange> range);

private:
    QString m_text;
    QStringListModel m_lines;
};
