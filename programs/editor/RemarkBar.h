// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricRemark.h>
#include <QVSongLrc/QVSongLine.h>

#include <QFrame>
#include <QList>

#include <memory>

class QLabel;
class QPushButton;
class QTreeWidget;
class SongModel;

/// Says how many remarks there are on a song's file, and lists them on demand. Hidden if there are none.
class RemarkBar : public QFrame
{
    Q_OBJECT

public:
    explicit RemarkBar(SongModel &song);

Q_SIGNALS:
    /// The user chose a remark on the line in this row.
    void rowChosen(qsizetype row);

private:
    void setRemarks(const QList<QVLyricRemark> &remarks, qint64 firstLine);
    void showList(bool isShown);

    SongModel &m_song;
    QLabel *m_summary;
    QPushButton *m_show;
    QTreeWidget *m_list;
    QList<std::weak_ptr<QVSongLine>> m_lines; // of the remarks in the list
};
