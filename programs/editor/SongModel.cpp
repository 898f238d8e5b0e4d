// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongModel.h"

#include "LineText.h"

#include <QVSongLrc/QVLyricImport.h>
#include <QVSongLrc/QVUtils.h>

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The line of the text, from 1, that an import puts first: it leaves out the blank ones before.
qint64 firstLineOf(const QString &text)
{
    static const QRegularExpression lineEnd(u"\r\n|\r|\n"_s);
    const QStringList lines = text.split(lineEnd);
    const auto first = std::find_if(lines.cbegin(), lines.cend(), [](const QString &line) {
        return !QVLyricImport(line).lines()->isEmpty();
    });
    return first - lines.cbegin() + 1;
}

} // namespace

SongModel::SongModel()
{
    m_song.buildWithLrcText(u""_s);
}

QString SongModel::exactText() const
{
    QString text;
    for (const auto &line : lines())
        text += LineText::exact(*line) + u'\n';
    return text;
}

QString SongModel::property(QStringView key) const
{
    const auto line = std::find_if(lines().cbegin(), lines().cend(), [key](const auto &each) {
        return each->isProperty() && each->propertyStr() == key;
    });
    return line == lines().cend() ? QString() : (*line)->lineText();
}

void SongModel::replaceSong(const SongFile &file, const QString &text)
{
    m_undoStack.clear();
    m_undoStack.setClean(); // clear() leaves an empty stack unclean, which a recovered song may have
    m_file = file;
    ++m_number;
    const QVLyricImport song(text);
    splice(0, lines().size(), *song.lines());
    Q_EMIT songReplaced(song.remarks(), song.remarks().isEmpty() ? 1 : firstLineOf(text));
}

void SongModel::save(SongFile file)
{
    const bool isSame =
        !isModified() && file.name() == m_file.name() && !file.isGone() && !file.hasChangedOnDisk();
    if (!lines().isEmpty() || !isSame) // a file of blank lines stays as it is
        file.write(text());
    m_file = file;
    m_undoStack.setClean();
    Q_EMIT saved();
}

int SongModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(lines().size());
}

int SongModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SongModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical || section >= ColumnCount)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    const QString titles[] = {tr("Times"), tr("Kind"), tr("Text")};
    const QString tips[] = {tr("When the line is sung: time tags such as [01:02.50], or 1:02.5"),
                            tr("A lyric line, or a property: two letters, such as “ti” for the title"),
                            tr("What is sung, or the property's value")};
    if (role == Qt::DisplayRole)
        return titles[section];
    return role == Qt::ToolTipRole ? tips[section] : QVariant();
}

QVariant SongModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)
        || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const QVSongLine &line = *lines()[index.row()];
    if (index.column() == Text)
        return line.lineText();
    if (index.column() == Kind)
        return line.isProperty() ? line.propertyStr() : lyricKind();
    QString tags;
    if (!line.isProperty()) {
        for (const qint64 time : *line.aryTimes())
            tags += QVUtils::getTimeIntervalPeerStr(time);
    }
    return tags;
}

Qt::ItemFlags SongModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || (index.column() == Times && lines()[index.row()]->isProperty()))
        return flags; // a property has no times
    return flags | Qt::ItemIsEditable;
}

bool SongModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const QString typed = value.toString();
    if (typed == data(index, role).toString())
        return true;
    if (index.column() == Text) {
        setText(index.row(), typed);
        return true;
    }
    const bool isTime = index.column() == Times;
    const bool isValid = isTime ? setTimes(index.row(), typed) : setKey(index.row(), typed);
    if (!isValid)
        Q_EMIT refused((isTime ? tr("“%1” is not a time: write [mm:ss.xx], several in a row")
                               : tr("“%1” is not a property: write two letters a to z"))
                           .arg(typed));
    return isValid;
}
