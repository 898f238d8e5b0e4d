// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricStateLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace QVSongLrcPrivate {

namespace {

/// Has the role of a notification, which screen readers announce when it is shown. They ignore a text change in
/// a label without the focus, and Qt's bridge on Linux drops alerts.
class StateInterface final : public QAccessibleWidget
{
public:
    explicit StateInterface(LyricStateLabel *label)
        : QAccessibleWidget(label, QAccessible::Notification)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? static_cast<const QLabel *>(object())->text()
                                         : QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *const label = qobject_cast<LyricStateLabel *>(object);
    return label ? new StateInterface(label) : nullptr;
}

} // namespace

LyricStateLabel::LyricStateLabel(QWidget *parent)
    : QLabel(parent)
{
    QAccessible::installFactory(makeInterface); // has no effect the second time
}

void LyricStateLabel::announce(const QString &text)
{
    if (text == this->text())
        return;
    setText(text);
    if (!isVisible())
        return;
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

} // namespace QVSongLrcPrivate
