// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace QVSongLrcPrivate {

/// A status line that screen readers announce when it changes, wherever the focus is.
class LyricStateLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit LyricStateLabel(QWidget *parent = nullptr);

    /// Shows \p text, and has screen readers announce it if the label is visible.
    void announce(const QString &text);
};

} // namespace QVSongLrcPrivate
