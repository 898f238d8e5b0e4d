// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricCellDelegate.h"

#include <QHelpEvent>
#include <QToolTip>

namespace QVSongLrcPrivate {

bool LyricCellDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                  const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() == QEvent::ToolTip && sizeHint(option, index).width() <= option.rect.width()) {
        QToolTip::hideText();
        return true;
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}

void LyricCellDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (!option->text.isEmpty())
        option->direction = option->text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
}

} // namespace QVSongLrcPrivate
