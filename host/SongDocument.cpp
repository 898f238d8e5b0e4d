// SPDX-License-Identifier: MIT
#include "SongDocument.h"

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

// The time tags that somebody typed, with or without brackets; nothing when there is anything else.
std::optional<QStringList> typedTags(QString typed)
{
    typed = typed.trimmed();
    if (!typed.isEmpty() && !typed.startsWith(u'['))
        typed = u'[' + typed + u']';
    QStringList tags;
    for (const QString &part : typed.split(u']', Qt::SkipEmptyParts)) {
        tags += part.trimmed() + u']';
        const QString &tag = tags.last();
        if (!tag.startsWith(u'[') || tag.count(u'[') != 1 || !QVUtils::isTimeString(tag))
            return {};
    }
    return tags.isEmpty() || typed.endsWith(u']') ? std::optional(tags) : std::nullopt;
}

} // namespace

// Some lines in the place of others.
class SongDocument::Step : public QUndoCommand
{
public:
    Step(SongDocument &document, const QString &name, StepKind kind, qsizetype row, QVSongLineList before,
         QVSongLineList after)
        : QUndoCommand(name)
        , m_document(document)
        , m_kind(kind)
        , m_row(row)
        , m_before(std::move(before))
        , m_after(std::move(after))
    {
    }

    void undo() override { m_document.splice(m_row, m_after.size(), m_before); }
    void redo() override { m_document.splice(m_row, m_before.size(), m_after); }
    int id() const override { return m_kind; }

    // Of the same lines, one after the other.
    bool mergeWith(const QUndoCommand *next) override
    {
        const Step *const step = static_cast<const Step *>(next);
        if (step->m_row != m_row || step->m_before != m_after)
            return false;
        m_after = step->m_after;
        return true;
    }

private:
    SongDocument &m_document;
    const StepKind m_kind;
    const qsizetype m_row;
    const QVSongLineList m_before;
    QVSongLineList m_after;
};

SongDocument::SongDocument(QObject *parent)
    : QObject(parent)
{
    m_song.buildWithLrcText(u""_s);
}

QString SongDocument::property(QStringView key) const
{
    const auto line = std::find_if(lines().cbegin(), lines().cend(), [key](const auto &each) {
        return each->isProperty() && each->propertyStr() == key;
    });
    return line == lines().cend() ? QString() : (*line)->lineText();
}

void SongDocument::clear()
{
    begin({}, {});
}

bool SongDocument::open(const QString &name)
{
    QString read;
    const SongFile file = SongFile::read(name, read);
    begin(file, read);
    return text() == read || text() == read + u'\n';
}

void SongDocument::save(SongFile file)
{
    file.write(text());
    m_file = file;
    m_undoStack.setClean();
    Q_EMIT fileChanged();
}

void SongDocument::restore(const SongFile &file, const QString &text)
{
    begin(file, text);
    m_undoStack.resetClean();
}

void SongDocument::begin(const SongFile &file, const QString &text)
{
    m_undoStack.clear();
    m_file = file;
    ++m_number;
    QVEditSong song;
    song.buildWithLrcText(text);
    splice(0, lines().size(), *song.aryLines());
    Q_EMIT fileChanged();
    Q_EMIT begun();
}

bool SongDocument::setTimes(qsizetype row, const QString &typed)
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

bool SongDocument::setKey(qsizetype row, const QString &key)
{
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

void SongDocument::setText(qsizetype row, const QString &text)
{
    QString oneLine = text;
    oneLine.replace(u'\n', u' ').replace(u'\r', u' ');
    edit(tr("Change Text"), [&](QVEditSong &draft) {
        QVSongLine &line = ownLine(draft, row);
        if (line.isProperty())
            line.setLineText(oneLine); // updateWithText() would look for a whole tag, and make a lyric line
        else
            line.updateWithText(oneLine);
    });
}

void SongDocument::insertLine(qsizetype row)
{
    edit(tr("Insert Line"), [&](QVEditSong &draft) { draft.insertLine(QVSongLine::emptyLine(), row); });
}

void SongDocument::deleteLines(const Rows &rows)
{
    edit(tr("Delete Lines"), [&](QVEditSong &draft) { draft.deleteLineAtIndexs(rows); });
}

bool SongDocument::moveLines(const Rows &rows, qint64 milliseconds)
{
    const bool isTooFar = std::any_of(rows.cbegin(), rows.cend(), [&](quint64 row) {
        const auto times = lines()[qsizetype(row)]->aryTimes();
        return std::any_of(times->cbegin(), times->cend(),
                           [&](qint64 time) { return time > LatestTime - milliseconds; });
    });
    if (isTooFar)
        return false;
    const auto change = [&](QVEditSong &draft) {
        for (const quint64 row : rows)
            ownLine(draft, qsizetype(row)).shiftAllTime(milliseconds);
    };
    edit(tr("Move Lines"), change, Move);
    return true;
}

bool SongDocument::stamp(qsizetype row, qint64 milliseconds)
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

bool SongDocument::insertMakerMark()
{
    return edit(tr("Insert Maker Mark"), [](QVEditSong &draft) { draft.insertCopyrightMark(); });
}

void SongDocument::load(const QString &text)
{
    edit(tr("Load Lyric"),
         [&](QVEditSong &draft) { draft.buildWithLrcText(QString(text).replace("\r\n"_L1, "\n"_L1)); });
}

// False when the change changes nothing.
bool SongDocument::edit(const QString &name, const std::function<void(QVEditSong &)> &change, StepKind kind)
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
                   [](const auto &a, const auto &b) { return a->isEqual(b); })) {
        return false;
    }
    m_undoStack.push(new Step(*this, name, kind, row, std::move(removed), std::move(inserted)));
    return true;
}

void SongDocument::splice(qsizetype row, qsizetype removed, const QVSongLineList &inserted)
{
    if (removed == inserted.size()) {
        replace(row, removed, inserted);
    } else {
        replace(row, removed, {});
        replace(row, 0, inserted);
    }
    m_song.updateSongText(); // and the lines' ranges with it
    Q_EMIT changed(row, removed, inserted.size());
}

void SongDocument::replace(qsizetype row, qsizetype removed, const QVSongLineList &inserted)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    Q_EMIT aboutToReplace(row, removed, inserted.size());
    const QVSongLineList old = lines();
    m_song.setAryLines(
        std::make_shared<QVSongLineList>(old.first(row) + inserted + old.sliced(row + removed)));
    // A line out of the document would go on slicing the whole text that it was in: it takes its own text out.
    for (const auto &line : old.sliced(row, removed))
        line->lineText();
    Q_EMIT replaced(row, removed, inserted.size());
}
