// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>

namespace QVSongLrcPrivate {

/// The table of candidates. Its columns fill its width in constant proportions; a click on a header sorts.
class LyricResultsTable final : public QTableView
{
    Q_OBJECT

public:
    explicit LyricResultsTable(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    /// -1 when no row is selected.
    qint64 selectedRow() const;

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void clearSortIndicator();

    int m_fittedWidth = 0; // the viewport's width at the last resize
};

} // namespace QVSongLrcPrivate
