// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "FileCommands.h"

#include "programs/common/TextFile.h"

#include <QDir>
#include <QFileDialog>
#include <QScopedValueRollback>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxRecentFiles = 9; // their shortcuts are Ctrl+1 to Ctrl+9
const QLatin1StringView RecentKey("recentFiles");

} // namespace

FileCommands::FileCommands(SongModel &song, QWidget *window)
    : QObject(window)
    , m_song(song)
    , m_window(window)
{
}

void FileCommands::newSong()
{
    if (confirmDiscard())
        m_song.replaceSong({}, {});
}

void FileCommands::open()
{
    const QString name = QFileDialog::getOpenFileName(
        m_window, tr("Open Lyric"), startFolder(), tr("Lyrics (*.lrc *.LRC);;Texts (*.txt);;All files (*)"));
    if (!name.isEmpty())
        openFile(name);
}

void FileCommands::openFile(const QString &file)
{
    if (!m_isAsking && confirmDiscard())
        read(file);
}

bool FileCommands::confirmDiscard()
{
    Q_EMIT aboutToUseSong();
    const SongFile &file = m_song.file();
    if (!m_song.isModified() && !file.isGone())
        return true;
    QString question = tr("The song has not been saved. Save it?");
    if (file.isGone())
        question = tr("“%1” is no longer on disk. Save the song?").arg(file.shortName());
    else if (!file.name().isEmpty())
        question = tr("Save the changes to “%1”?").arg(file.shortName());
    const auto answer =
        ask(tr("Unsaved Changes"), question, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
            QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

bool FileCommands::save()
{
    Q_EMIT aboutToUseSong();
    const SongFile &file = m_song.file();
    if (file.name().isEmpty())
        return saveAs();
    if (file.hasChangedOnDisk()) {
        m_isChangeKnown = true;
        const QString question = tr("“%1” has changed on disk since it was opened. Overwrite it?");
        if (ask(tr("File Changed"), question.arg(file.shortName()), QMessageBox::Save | QMessageBox::Cancel,
                QMessageBox::Cancel)
            != QMessageBox::Save)
            return false;
    }
    return write(file.name());
}

bool FileCommands::saveAs()
{
    Q_EMIT aboutToUseSong();
    QString name = m_song.file().name();
    if (name.isEmpty())
        name = startFolder() + u"/song.lrc"_s;
    const QScopedValueRollback asking(m_isAsking, true);
    name =
        QFileDialog::getSaveFileName(m_window, tr("Save Lyric"), name, tr("Lyrics (*.lrc);;All files (*)"));
    return !name.isEmpty() && write(name);
}

bool FileCommands::write(const QString &name)
{
    SongFile file = m_song.file();
    file.setName(name);
    if (!file.canHold(m_song.text())) {
        const QString question =
            tr("The file's encoding, %1, lacks characters that the song now has. Save the file in UTF-8?");
        if (ask(tr("Save in UTF-8"), question.arg(file.encodingName()),
                QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Yes)
            != QMessageBox::Yes)
            return false;
        file.useUtf8();
    }
    try {
        m_song.save(file);
    } catch (const FileRefused &refused) {
        QMessageBox::critical(
            m_window, tr("Not Saved"),
            tr("%1\n\nThe file was not changed. Save the song under another name with File, Save As.")
                .arg(QString::fromUtf8(refused.what())));
        return false;
    } catch (const FileError &error) {
        QMessageBox::critical(m_window, tr("Not Saved"), QString::fromUtf8(error.what()));
        return false;
    }
    m_isChangeKnown = false;
    remember(file.name());
    QString saved = tr("Saved %1").arg(file.name());
    if (const qsizetype cut = LineEdits::timesWithThousandths(m_song.lines()))
        saved +=
            cut == 1 ? tr("; 1 time lost its thousandths") : tr("; %1 times lost their thousandths").arg(cut);
    Q_EMIT message(saved);
    return true;
}

void FileCommands::read(const QString &name)
{
    QString text;
    try {
        m_song.replaceSong(SongFile::read(name, text), text);
    } catch (const FileError &error) {
        QMessageBox::critical(m_window, tr("Not Opened"), QString::fromUtf8(error.what()));
        return;
    }
    m_isChangeKnown = false;
    remember(m_song.file().name());
    const SongFile &file = m_song.file();
    QString opened = tr("Opened %1").arg(file.name());
    if (file.isEncodingGuessed())
        opened += tr("; its encoding is a guess: %1").arg(file.encodingName());
    if (!m_song.lines().isEmpty() && file.content(m_song.text()) != text)
        opened += tr("; saving writes its tags and line ends in the usual form");
    Q_EMIT message(opened);
}

void FileCommands::checkDisk()
{
    if (m_isAsking || m_isChangeKnown || !m_song.file().hasChangedOnDisk())
        return;
    Q_EMIT aboutToUseSong();
    m_isChangeKnown = true;
    const bool isModified = m_song.isModified();
    const QString question = isModified ? tr("“%1” has changed on disk. Reload it and lose your changes?")
                                        : tr("“%1” has changed on disk. Reload it?");
    if (ask(tr("File Changed"), question.arg(m_song.file().shortName()), QMessageBox::Yes | QMessageBox::No,
            isModified ? QMessageBox::No : QMessageBox::Yes)
        == QMessageBox::Yes)
        read(m_song.file().name());
}

QMessageBox::StandardButton FileCommands::ask(const QString &title, const QString &text,
                                              QMessageBox::StandardButtons buttons,
                                              QMessageBox::StandardButton defaultButton)
{
    const QScopedValueRollback asking(m_isAsking, true);
    return QMessageBox::warning(m_window, title, text, buttons, defaultButton);
}

QStringList FileCommands::recentFiles()
{
    return QSettings().value(RecentKey).toStringList();
}

void FileCommands::remember(const QString &name)
{
    QStringList names = recentFiles();
    names.removeAll(name);
    names.prepend(name);
    QSettings().setValue(RecentKey, names.first(std::min(names.size(), MaxRecentFiles)));
    Q_EMIT recentFilesChanged();
}

QString FileCommands::startFolder() const
{
    const QString last = m_song.file().name().isEmpty() ? recentFiles().value(0) : m_song.file().name();
    return last.isEmpty() ? QDir::homePath() : QFileInfo(last).path();
}
