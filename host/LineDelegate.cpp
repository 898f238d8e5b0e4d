// SPDX-License-Identifier: MIT
#include "LineDelegate.h"

#include "LineTableModel.h"

#include <QComboBox>

using namespace Qt::StringLiterals;

void LineDelegate::commitOpenEditor()
{
    if (const QPointer<QWidget> editor = std::exchange(m_editor, nullptr)) {
        Q_EMIT commitData(editor);
        Q_EMIT closeEditor(editor);
    }
}

QWidget *LineDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const
{
    if (index.column() != LineTableModel::Kind) {
        m_editor = QStyledItemDelegate::createEditor(parent, option, index);
        return m_editor;
    }
    auto *const kinds = new QComboBox(parent);
    kinds->setEditable(true);
    kinds->setInsertPolicy(QComboBox::NoInsert);
    kinds->addItem(tr("Lyric"));
    kinds->addItems({u"ti"_s, u"ar"_s, u"al"_s, u"au"_s, u"by"_s, u"la"_s, u"re"_s, u"ve"_s});
    kinds->setAccessibleName(tr("Kind"));
    m_editor = kinds;
    return kinds;
}

void LineDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *const kinds = qobject_cast<QComboBox *>(editor);
    if (!kinds)
        return QStyledItemDelegate::setEditorData(editor, index);
    const QString key = index.data(Qt::EditRole).toString();
    kinds->setCurrentText(key.isEmpty() ? kinds->itemText(0) : key);
}

void LineDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const auto *const kinds = qobject_cast<QComboBox *>(editor);
    if (!kinds)
        return QStyledItemDelegate::setModelData(editor, model, index);
    const QString kind = kinds->currentText().trimmed();
    model->setData(index, kind == kinds->itemText(0) ? QString() : kind, Qt::EditRole);
}
