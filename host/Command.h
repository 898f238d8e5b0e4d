// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QMenu>

/// Adds a command to a menu, with all that a command has: \p name is the action's object name, and \p tip tells
/// what it does, in the tooltip together with its keys.
template <typename Receiver, typename Slot>
QAction *addCommand(QMenu *menu, const char *name, const QString &text, const QKeySequence &keys,
                    const QString &tip, Receiver *receiver, Slot slot)
{
    QAction *const action = menu->addAction(text, keys, receiver, slot);
    action->setObjectName(QLatin1StringView(name));
    action->setStatusTip(tip);
    action->setToolTip(QStringLiteral("%1 (%2)").arg(tip, keys.toString(QKeySequence::NativeText)));
    menu->setToolTipsVisible(true);
    return action;
}
