// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "RemarkBar.h"

#include "SongModel.h"

#include <QAccessible>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

QString summaryOf(const QList<QVLyricRemark> &remarks)
{
    const auto warnings =
        std::count_if(remarks.cbegin(), remarks.cend(), std::mem_fn(&QVLyricRemark::isWarning));
    const auto notes = remarks.size() - warnings;
    QString readOtherwise = warnings == 1 ? RemarkBar::tr("1 place was read otherwise")
                                          : RemarkBar::tr("%1 places were read otherwise").arg(warnings);
    const QString toLookAt =
        notes == 1 ? RemarkBar::tr("1 place to look at") : RemarkBar::tr("%1 places to look at").arg(notes);
    if (notes == 0)
        return readOtherwise;
    return warnings == 0 ? toLookAt : RemarkBar::tr("%1, %2").arg(readOtherwise, toLookAt);
}

} // namespace

RemarkBar::RemarkBar(SongModel &song)
    : m_song(song)
    , m_summary(new QLabel)
    , m_show(new QPushButton)
    , m_list(new QTreeWidget)
{
    setFrameShape(StyledPanel);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum); // the table has the rest
    m_summary->setObjectName(u"remarkSummary"_s);
    m_summary->setToolTip(tr("Other programs may take these places for other words or times"));
    m_show->setObjectName(u"showRemarks"_s);
    m_show->setToolTip(tr("List the places"));
    connect(m_show, &QPushButton::clicked, this, [this] { showList(m_list->isHidden()); });
    auto *const close = new QToolButton;
    close->setObjectName(u"closeRemarks"_s);
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setAccessibleName(tr("Close the remarks"));
    close->setToolTip(tr("Close"));
    connect(close, &QToolButton::clicked, this, &QWidget::hide);

    m_list->setObjectName(u"remarks"_s);
    m_list->setAccessibleName(tr("Remarks on the file"));
    m_list->setHeaderLabels({tr("Place"), tr("Kind"), tr("Remark")});
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setMaximumHeight(fontMetrics().height() * 10);
    m_list->setAllColumnsShowFocus(true);
    const auto choose = [this](const QTreeWidgetItem *item) {
        const auto line =
            m_lines.value(m_list->indexOfTopLevelItem(const_cast<QTreeWidgetItem *>(item))).lock();
        if (const qsizetype row = m_song.lines().indexOf(line);
            row >= 0) // else the line was changed or deleted
            Q_EMIT rowChosen(row);
    };
    connect(m_list, &QTreeWidget::itemClicked, this, choose);
    connect(m_list, &QTreeWidget::itemActivated, this, choose); // by Enter

    auto *const bar = new QHBoxLayout;
    bar->addWidget(m_summary, 1);
    bar->addWidget(m_show);
    bar->addWidget(close);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 3, 3, 3);
    layout->addLayout(bar);
    layout->addWidget(m_list);
    connect(&song, &SongModel::songReplaced, this, &RemarkBar::setRemarks);
    setRemarks({}, 1);
}

void RemarkBar::setRemarks(const QList<QVLyricRemark> &remarks, qint64 firstLine)
{
    QList<QTreeWidgetItem *> items;
    m_lines.clear();
    for (const QVLyricRemark &remark : remarks) {
        auto *const item = new QTreeWidgetItem({u"%1:%2"_s.arg(remark.line).arg(remark.column),
                                                QVLyricRemark::name(remark.kind), remark.message});
        // Blank lines before the first and after the last have no row.
        const qint64 row = std::clamp<qint64>(remark.line - firstLine, 0, std::max(0, m_song.rowCount() - 1));
        m_lines += m_song.lines().value(row);
        item->setToolTip(2, remark.message); // a long one is cut off
        items += item;
    }
    m_list->clear();
    m_list->addTopLevelItems(items);
    m_summary->setText(summaryOf(remarks));
    showList(false);
    setVisible(!remarks.isEmpty());
    if (isVisible()) {
        QAccessibleEvent shown(m_summary, QAccessible::Alert);
        QAccessible::updateAccessibility(&shown);
    }
}

void RemarkBar::showList(bool isShown)
{
    m_list->setVisible(isShown);
    m_show->setText(isShown ? tr("&Hide") : tr("Sho&w"));
    if (isShown) {
        m_list->setCurrentItem(m_list->topLevelItem(0));
        m_list->setFocus();
    }
}
