// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>

namespace QVSongLrcPrivate {

/// Shows the candidates. Its columns fill its width and keep their shares of it; a click on a header sorts.
class LyricResultsTable final : public QTableView
{
    Q_OBJECT

public:
    explicit LyricResultsTable(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    /// -1 when there is none.
    qint64 selectedRow() const;

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showNoOrder();

    int m_fittedWidth = 0; // of the viewport
};

} // namespace QVSongLrcPrivate
