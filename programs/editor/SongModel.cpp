// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongModel.h"

#include <QVSongLrc/QVUtils.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Replaces the draft's line by a copy that may be changed.
QVSongLine &ownLine(QVEditSong &draft, qsizetype row)
{
    auto &line = (*draft.aryLines())[row];
    line = std::make_shared<QVSongLine>(*line);
    return *line;
}

// The time tags in what the user typed. A single tag may lack its brackets. Nothing if there is any other text.
std::optional<QStringList> typedTags(const QString &typed)
{
    QString text = typed.trimmed();
    if (!text.isEmpty() && !text.contains(u'[') && !text.contains(u']'))
        text = u'[' + text + u']';
    QStringList tags;
    for (; !text.isEmpty(); text = text.sliced(tags.last().size()).trimmed()) {
        tags += text.first(text.indexOf(u']') + 1);
        if (tags.last().lastIndexOf(u'[') != 0 || !QVUtils::isTimeString(tags.last()))
            return {};
    }
    return tags;
}

} // namespace

// Replaces some consecutive lines by others.
class SongModel::Step : public QUndoCommand
{
public:
    Step(SongModel &song, const QString &name, qsizetype row, QVSongLineList before, QVSongLineList after)
        : QUndoCommand(name)
        , m_song(song)
        , m_row(row)
        , m_before(std::move(before))
        , m_after(std::move(after))
    {
    }

    void undo() override { m_song.splice(m_row, m_after.size(), m_before); }
    void redo() override { m_song.splice(m_row, m_before.size(), m_after); }

private:
    SongModel &m_song;
    const qsizetype m_row;
    const QVSongLineList m_before;
    const QVSongLineList m_after;
};

SongModel::SongModel()
{
    m_song.buildWithLrcText(u""_s);
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
    QVEditSong song;
    song.buildWithLrcText(text);
    splice(0, lines().size(), *song.aryLines());
    Q_EMIT songReplaced();
}

void SongModel::save(SongFile file)
{
    file.write(text());
    m_file = file;
    m_undoStack.setClean();
    Q_EMIT saved();
}

void SongModel::insertLine(qsizetype row)
{
    edit(tr("Insert Line"), [&](QVEditSong &draft) { draft.insertLine(QVSongLine::emptyLine(), row); });
}

void SongModel::deleteLines(const Rows &rows)
{
    edit(tr("Delete Lines"), [&](QVEditSong &draft) { draft.deleteLineAtIndexs(rows); });
}

bool SongModel::moveLines(const Rows &rows, qint64 milliseconds)
{
    for (const quint64 row : rows) {
        const auto times = lines()[qsizetype(row)]->aryTimes();
        if (std::any_of(times->cbegin(), times->cend(),
                        [&](qint64 time) { return time > LatestTime - milliseconds; }))
            return false;
    }
    edit(tr("Move Lines"), [&](QVEditSong &draft) {
        for (const quint64 row : rows)
            ownLine(draft, qsizetype(row)).shiftAllTime(milliseconds);
    });
    return true;
}

bool SongModel::stamp(qsizetype row, qint64 milliseconds)
{
    if (lines()[row]->isProperty())
        return false;
    edit(tr("Stamp Time"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        if (const auto times = line.aryTimes(); !times->isEmpty())
            times->first() = milliseconds; // the list is the line's own
        else
            line.appendTime(milliseconds);
    });
    return true;
}

bool SongModel::insertMakerMark()
{
    return edit(tr("Insert Maker Mark"), [](QVEditSong &draft) { draft.insertCopyrightMark(); });
}

void SongModel::load(const QString &text)
{
    edit(tr("Load Lyric"),
         [&](QVEditSong &draft) { draft.buildWithLrcText(QString(text).replace("\r\n"_L1, "\n"_L1)); });
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
    if (index.column() == Text)
        return setText(index.row(), typed);
    const bool isTime = index.column() == Times;
    const bool isValid = isTime ? setTimes(index.row(), typed) : setKey(index.row(), typed);
    if (!isValid)
        Q_EMIT refused((isTime ? tr("“%1” is not a time: write [mm:ss.xx], several in a row")
                               : tr("“%1” is not a property: write two letters a to z"))
                           .arg(typed));
    return isValid;
}

bool SongModel::setTimes(qsizetype row, const QString &typed)
{
    const auto tags = typedTags(typed);
    if (!tags || lines()[row]->isProperty())
        return false;
    edit(tr("Change Times"), [&](QVEditSong &draft) {
        const auto times = ownLine(draft, row).aryTimes(); // the line's own list
        times->resize(tags->size(), 0);
        for (qsizetype i = 0; i < tags->size(); ++i) {
            // Keep a time whose tag is unchanged: it may have a last digit that the tag lacks.
            if (tags->at(i) != QVUtils::getTimeIntervalPeerStr(times->at(i)))
                (*times)[i] = QVUtils::getTimeInterval(tags->at(i));
        }
    });
    return true;
}

bool SongModel::setKey(qsizetype row, const QString &typed)
{
    const QString key = typed == lyricKind() ? QString() : typed.trimmed();
    const bool isKey = key.size() == 2 && QVUtils::isPropertyString(u'[' + key + u":]"_s);
    if (!isKey && !key.isEmpty())
        return false;
    edit(tr("Change Kind"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        line.setIsProperty(isKey);
        line.setPropertyStr(key);
    });
    return true;
}

bool SongModel::setText(qsizetype row, QString typed)
{
    typed.replace(u'\n', u' ').replace(u'\r', u' '); // a pasted text may have several lines
    edit(tr("Change Text"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        if (line.isProperty())
            line.setLineText(typed); // updateWithText() would make it a lyric line
        else
            line.updateWithText(typed);
    });
    return true;
}

bool SongModel::edit(const QString &name, const std::function<void(QVEditSong &)> &change)
{
    QVEditSong draft;
    draft.setAryLines(std::make_shared<QVSongLineList>(lines()));
    change(draft);
    // The step leaves out the lines at both ends that stay the same.
    const QVSongLineList &before = lines();
    const QVSongLineList &after = *std::as_const(draft).aryLines();
    const auto head =
        std::mismatch(before.cbegin(), before.cend(), after.cbegin(), after.cend()).first - before.cbegin();
    const auto tail =
        std::mismatch(before.crbegin(), before.crend() - head, after.crbegin(), after.crend() - head).first
        - before.crbegin();
    QVSongLineList removed = before.sliced(head, before.size() - head - tail);
    QVSongLineList inserted = after.sliced(head, after.size() - head - tail);
    if (std::equal(removed.cbegin(), removed.cend(), inserted.cbegin(), inserted.cend(),
                   [](const auto &a, const auto &b) { return a->isEqual(b); }))
        return false;
    m_undoStack.push(new Step(*this, name, head, std::move(removed), std::move(inserted)));
    return true;
}

void SongModel::splice(qsizetype row, qsizetype removed, const QVSongLineList &inserted)
{
    QVSongLineList &all = *m_song.aryLines();
    // A removed line would keep the whole song text alive; lineText() makes it keep only its own part.
    for (const auto &line : all.sliced(row, removed))
        line->lineText();
    // Insert or remove first: the table may select another line, whose range must match the text shown.
    const qsizetype changes = std::min(removed, inserted.size());
    const qsizetype end = row + changes;
    if (removed > changes) {
        beginRemoveRows({}, int(end), int(row + removed) - 1);
        all.remove(end, removed - changes);
        endRemoveRows();
    } else if (inserted.size() > changes) {
        beginInsertRows({}, int(end), int(row + inserted.size()) - 1);
        all = all.first(end) + inserted.sliced(changes) + all.sliced(end);
        endInsertRows();
    }
    std::copy_n(inserted.cbegin(), changes, all.begin() + row);
    if (changes > 0)
        Q_EMIT dataChanged(index(int(row), 0), index(int(end) - 1, ColumnCount - 1));
    m_song.updateSongText();
    Q_EMIT changed(row, removed, inserted.size());
}
