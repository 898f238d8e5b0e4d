// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

/// Edits the cells of a LineTableModel: the kind in a list that also takes other keys, the rest in a line.
class LineDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Makes what is being typed into a cell an edit, as leaving the cell would.
    void commitOpenEditor();

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    mutable QPointer<QWidget> m_editor; // the last one opened
};
