// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongModel.h"

#include <QVSongLrc/QVUtils.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// A copy of the draft's line, in the line's place, to be changed.
QVSongLine &ownLine(QVEditSong &draft, qsizetype row)
{
    auto &line = (*draft.aryLines())[row];
    line = std::make_shared<QVSongLine>(*line);
    return *line;
}

// The time tags that somebody typed, of which a single one may do without its brackets; nothing when there is
// anything else.
std::optional<QStringList> typedTags(const QString &typed)
{
    const QString text = typed.simplified().replace("] ["_L1, "]["_L1);
    QStringList parts;
    if (text.startsWith(u'[') && text.endsWith(u']'))
        parts = text.sliced(1).chopped(1).split("]["_L1);
    else if (!text.isEmpty())
        parts = QStringList(text);
    QStringList tags;
    for (const QString &part : std::as_const(parts)) {
        tags += u'[' + part + u']';
        if (part.contains(u'[') || part.contains(u']') || !QVUtils::isTimeString(tags.last()))
            return {};
    }
    return tags;
}

} // namespace

// Some lines in the place of others.
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

void SongModel::begin(const SongFile &file, const QString &text)
{
    m_undoStack.clear();
    m_undoStack.setClean(); // a song that was recovered is not, and without an edit there is nothing to clear
    m_file = file;
    ++m_number;
    QVEditSong song;
    song.buildWithLrcText(text);
    splice(0, lines().size(), *song.aryLines());
    Q_EMIT begun();
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
    const bool isTaken = isTime ? setTimes(index.row(), typed) : setKey(index.row(), typed);
    if (!isTaken)
        Q_EMIT refused((isTime ? tr("“%1” is no time: write [mm:ss.xx], several in a row")
                               : tr("“%1” is no property: write two letters a to z"))
                           .arg(typed));
    return isTaken;
}

bool SongModel::setTimes(qsizetype row, const QString &typed)
{
    const auto tags = typedTags(typed);
    if (!tags || lines()[row]->isProperty())
        return false;
    edit(tr("Change Times"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        const auto times = line.aryTimes();
        for (qsizetype i = 0; i < tags->size(); ++i) {
            const QString &tag = tags->at(i);
            if (i >= times->size())
                line.appendTime(QVUtils::getTimeInterval(tag));
            else if (tag != QVUtils::getTimeIntervalPeerStr(times->at(i))) // which lacks the last digit
                line.updateWithTimeStr(tag, i);
        }
        while (times->size() > tags->size())
            line.updateWithTimeStr(QString(), times->size() - 1);
    });
    return true;
}

bool SongModel::setKey(qsizetype row, const QString &typed)
{
    const QString key = typed == lyricKind() ? QString() : typed.trimmed();
    const bool isKey = key.size() == 2
        && std::all_of(key.cbegin(), key.cend(), [](QChar c) { return c >= u'a' && c <= u'z'; });
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
    typed.replace(u'\n', u' ').replace(u'\r', u' '); // it stays one line
    edit(tr("Change Text"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        if (line.isProperty())
            line.setLineText(typed); // updateWithText() would look for a whole tag, and make a lyric line
        else
            line.updateWithText(typed);
    });
    return true;
}

// False when the change changes nothing.
bool SongModel::edit(const QString &name, const std::function<void(QVEditSong &)> &change)
{
    QVEditSong draft;
    draft.setAryLines(std::make_shared<QVSongLineList>(lines()));
    change(draft);

    // The lines that are the same at both ends are no part of the step.
    const QVSongLineList &before = lines();
    const QVSongLineList &after = *std::as_const(draft).aryLines();
    const qsizetype shorter = std::min(before.size(), after.size());
    const auto head = std::mismatch(before.cbegin(), before.cbegin() + shorter, after.cbegin()).first;
    const qsizetype row = head - before.cbegin();
    const auto tail =
        std::mismatch(before.crbegin(), before.crbegin() + (shorter - row), after.crbegin()).first;
    const qsizetype same = row + (tail - before.crbegin());
    QVSongLineList removed = before.sliced(row, before.size() - same);
    QVSongLineList inserted = after.sliced(row, after.size() - same);
    if (std::equal(removed.cbegin(), removed.cend(), inserted.cbegin(), inserted.cend(),
                   [](const auto &a, const auto &b) { return a->isEqual(b); }))
        return false;
    m_undoStack.push(new Step(*this, name, row, std::move(removed), std::move(inserted)));
    return true;
}

void SongModel::splice(qsizetype row, qsizetype removed, const QVSongLineList &inserted)
{
    QVSongLineList &all = *m_song.aryLines();
    // A line out of the song would go on slicing the whole text that it was in: it takes its own text out.
    for (const auto &line : all.sliced(row, removed))
        line->lineText();
    // Lines in the place of others change; what is more or less comes or goes behind them. It goes first: the table
    // then moves to a line whose range must still be one in the text that is shown.
    const qsizetype changes = std::min(removed, inserted.size());
    const qsizetype behind = row + changes;
    if (removed > changes) {
        beginRemoveRows({}, int(behind), int(row + removed) - 1);
        all.remove(behind, removed - changes);
        endRemoveRows();
    } else if (inserted.size() > changes) {
        beginInsertRows({}, int(behind), int(row + inserted.size()) - 1);
        all = all.first(behind) + inserted.sliced(changes) + all.sliced(behind);
        endInsertRows();
    }
    std::copy_n(inserted.cbegin(), changes, all.begin() + row);
    if (changes > 0)
        Q_EMIT dataChanged(index(int(row), 0), index(int(behind) - 1, ColumnCount - 1));
    m_song.updateSongText(); // and the lines' ranges with it
    Q_EMIT changed(row, removed, inserted.size());
}
