// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace QVSongLrcPrivate {

/// A status line that screen readers speak when it changes, wherever the focus is.
class LyricStateLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit LyricStateLabel(QWidget *parent = nullptr);

    /// Shows \p text, and has it spoken if it is to be seen.
    void say(const QString &text);
};

} // namespace QVSongLrcPrivate
