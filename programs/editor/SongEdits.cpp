// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The edits of a song, and their undo steps.

#include "LineText.h"
#include "SongModel.h"

#include <QVSongLrc/QVLyricImport.h>
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

// Makes a changed line what it will be when the saved song is opened.
void reread(QVEditSong &draft, qsizetype row)
{
    QVSongLineList &lines = *draft.aryLines();
    const QVSongLineList read = LineText::reread(*lines[row]);
    if (read.size() != 1 || !read.first()->isEqual(lines[row])) // a property may have times, which are kept
        lines = lines.first(row) + read + lines.sliced(row + 1);
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
    try {
        edit(tr("Move Lines"), [&](QVEditSong &draft) {
            QVSongLineList moved;
            for (const quint64 row : rows) {
                ownLine(draft, qsizetype(row));
                moved += draft.aryLines()->at(qsizetype(row));
            }
            LineEdits::shift(moved, milliseconds, LineEdits::BelowZero::BecomesZero, LineEdits::Words::Move);
        });
    } catch (const LineEdits::Error &) {
        return false;
    }
    return true;
}

bool SongModel::stamp(qsizetype row, qint64 milliseconds)
{
    if (lines()[row]->isProperty())
        return false;
    const qint64 time = milliseconds - milliseconds % 10; // as it is saved
    edit(tr("Stamp Time"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        if (const auto times = line.aryTimes(); !times->isEmpty())
            times->first() = time; // the list is the line's own
        else
            line.appendTime(time);
    });
    return true;
}

bool SongModel::insertMakerMark()
{
    return edit(tr("Insert Maker Mark"), [](QVEditSong &draft) { LineEdits::mark(draft); });
}

void SongModel::load(const QString &text)
{
    edit(tr("Load Lyric"), [&](QVEditSong &draft) { draft.setAryLines(QVLyricImport(text).lines()); });
}

bool SongModel::setTimes(qsizetype row, const QString &typed)
{
    const auto times = LineText::typedTimes(typed);
    if (!times || lines()[row]->isProperty())
        return false;
    edit(tr("Change Times"), [&](QVEditSong &draft) {
        const auto changed = ownLine(draft, row).aryTimes(); // the line's own list
        const qsizetype count = changed->size();
        changed->resize(times->size(), 0);
        for (qsizetype i = 0; i < times->size(); ++i) {
            // Keep a time whose tag is unchanged: it may have thousandths, which the tag lacks.
            if (i >= count || changed->at(i) / 10 != times->at(i) / 10)
                (*changed)[i] = times->at(i);
        }
        reread(draft, row);
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
        reread(draft, row);
    });
    return true;
}

void SongModel::setText(qsizetype row, QString typed)
{
    edit(tr("Change Text"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        line.setLineText(line.isProperty() ? typed.replace(u'\n', u' ').replace(u'\r', u' ') : typed);
        reread(draft, row);
    });
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
