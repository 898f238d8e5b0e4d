// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVTextRange.h>

#include <QPlainTextEdit>

#include <optional>

/// Shows a text that a document wrote, and highlights a line of it by the line's range.
class LyricView : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit LyricView(QWidget *parent = nullptr);

    /// Shows \p text. Only the lines that differ from what is shown are touched.
    void setLyric(const QString &text);

    /// Highlights a stretch of the text, in UTF-16 code units, and brings it into view.
    void highlight(std::optional<QVTextRange> range);

private:
    QString m_shown;
};
