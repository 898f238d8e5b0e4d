// SPDX-License-Identifier: MIT
#include "FileMenu.h"

#include "Command.h"
#include "support/TextFile.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MostRecent = 9; // as there are digits for their keys
const QLatin1StringView RecentKey("recentFiles");

QStringList recentFiles()
{
    return QSettings().value(RecentKey).toStringList();
}

} // namespace

FileMenu::FileMenu(SongDocument &document, QWidget *parent)
    : QMenu(tr("&File"), parent)
    , m_document(document)
{
    QAction *const begin = addCommand(this, "newAction", tr("&New"), Qt::CTRL | Qt::Key_N, tr("Begin a song"),
                                      this, &FileMenu::newSong);
    QAction *const open = addCommand(this, "openAction", tr("&Open…"), Qt::CTRL | Qt::Key_O,
                                     tr("Open a lyric file"), this, &FileMenu::chooseFile);
    m_recent = addMenu(tr("Open &Recent"));
    m_recent->setObjectName(u"recentMenu"_s);
    addSeparator();
    QAction *const save = addCommand(this, "saveAction", tr("&Save"), Qt::CTRL | Qt::Key_S,
                                     tr("Save the song to its file"), this, &FileMenu::save);
    addCommand(this, "saveAsAction", tr("Save &As…"), Qt::CTRL | Qt::SHIFT | Qt::Key_S,
               tr("Save the song to another file"), this, &FileMenu::saveAs);
    addSeparator();
    addCommand(this, "closeAction", tr("&Close"), Qt::CTRL | Qt::Key_W, tr("Close the window"), parent,
               [parent] { parent->close(); });
    addCommand(this, "quitAction", tr("&Quit"), Qt::CTRL | Qt::Key_Q, tr("Close all windows"), qApp,
               &QApplication::closeAllWindows);
    begin->setIcon(style()->standardIcon(QStyle::SP_FileIcon));
    open->setIcon(style()->standardIcon(QStyle::SP_DialogOpenButton));
    save->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    m_mainActions = {begin, open, save};
    showRecent();
    connect(this, &QMenu::aboutToShow, this, &FileMenu::showRecent); // other windows open files too
}

void FileMenu::newSong()
{
    if (mayGiveUp())
        m_document.clear();
}

void FileMenu::chooseFile()
{
    const QString name =
        QFileDialog::getOpenFileName(parentWidget(), tr("Open Lyric"), startFolder(),
                                     tr("Lyrics (*.lrc *.LRC);;Texts (*.txt);;All files (*)"));
    if (!name.isEmpty())
        open(name);
}

void FileMenu::open(const QString &file)
{
    if (mayGiveUp())
        read(file);
}

bool FileMenu::mayGiveUp()
{
    Q_EMIT aboutToLook();
    const SongFile &file = m_document.file();
    if (!m_document.isModified() && !file.isGone())
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

bool FileMenu::save()
{
    Q_EMIT aboutToLook();
    const SongFile &file = m_document.file();
    if (file.name().isEmpty())
        return saveAs();
    if (file.hasChangedOnDisk()) {
        m_knowsOfChange = true;
        const QString question =
            tr("“%1” has changed on disk since it was opened. Save over what is there now?")
                .arg(file.shortName());
        if (ask(tr("File Changed"), question, QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel)
            != QMessageBox::Save)
            return false;
    }
    return write(file.name());
}

bool FileMenu::saveAs()
{
    Q_EMIT aboutToLook();
    QString name = m_document.file().name();
    if (name.isEmpty())
        name = startFolder() + u"/song.lrc"_s;
    const QScopedValueRollback asking(m_isAsking, true);
    name = QFileDialog::getSaveFileName(parentWidget(), tr("Save Lyric"), name,
                                        tr("Lyrics (*.lrc);;All files (*)"));
    return !name.isEmpty() && write(name);
}

bool FileMenu::write(const QString &name)
{
    SongFile file = m_document.file();
    file.setName(name);
    if (!file.canHold(m_document.text())) {
        const QString question =
            tr("The file's encoding, %1, lacks characters that the song now has. Save the file in UTF-8?")
                .arg(QString::fromLatin1(file.encodingName()));
        if (ask(tr("Save in UTF-8"), question, QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Yes)
            != QMessageBox::Yes)
            return false;
        file.useUtf8();
    }
    try {
        m_document.save(file);
    } catch (const FileError &error) {
        QMessageBox::critical(parentWidget(), tr("Not Saved"),
                              tr("The song could not be saved.\n%1").arg(QString::fromUtf8(error.what())));
        return false;
    }
    m_knowsOfChange = false;
    remember(file.name());
    Q_EMIT message(tr("Saved %1").arg(file.name()));
    return true;
}

void FileMenu::read(const QString &name)
{
    try {
        const bool isSame = m_document.open(name);
        m_knowsOfChange = false;
        remember(m_document.file().name());
        Q_EMIT message(isSame ? tr("Opened %1").arg(m_document.file().name())
                              : tr("Saving will tidy this file: blank lines, words in front of tags and tags "
                                   "in other forms are written anew"));
    } catch (const FileError &error) {
        QMessageBox::critical(parentWidget(), tr("Not Opened"), QString::fromUtf8(error.what()));
    }
}

void FileMenu::checkDisk()
{
    if (m_isAsking || m_knowsOfChange || !m_document.file().hasChangedOnDisk())
        return;
    m_knowsOfChange = true;
    const bool isModified = m_document.isModified();
    const QString question = isModified
        ? tr("“%1” has changed on disk. Read it again, and give up your changes?")
        : tr("“%1” has changed on disk. Read it again?");
    if (ask(tr("File Changed"), question.arg(m_document.file().shortName()),
            QMessageBox::Yes | QMessageBox::No, isModified ? QMessageBox::No : QMessageBox::Yes)
        == QMessageBox::Yes)
        read(m_document.file().name());
}

QMessageBox::StandardButton FileMenu::ask(const QString &title, const QString &text,
                                          QMessageBox::StandardButtons buttons,
                                          QMessageBox::StandardButton normal)
{
    const QScopedValueRollback asking(m_isAsking, true);
    return QMessageBox::warning(parentWidget(), title, text, buttons, normal);
}

void FileMenu::showRecent()
{
    m_recent->clear();
    const QStringList names = recentFiles();
    for (qsizetype i = 0; i < names.size() && i < MostRecent; ++i) {
        const QString title =
            u"&%1 %2"_s.arg(i + 1).arg(QFileInfo(names[i]).fileName().replace(u'&', u"&&"_s));
        addCommand(m_recent, "recentAction", title, QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)),
                   tr("Open %1").arg(names[i]), this, [this, name = names[i]] { open(name); });
    }
    m_recent->setEnabled(!names.isEmpty());
}

void FileMenu::remember(const QString &name)
{
    QStringList names = recentFiles();
    names.removeAll(name);
    names.prepend(name);
    QSettings().setValue(RecentKey, names.first(std::min(names.size(), MostRecent)));
    QMetaObject::invokeMethod(this, &FileMenu::showRecent,
                              Qt::QueuedConnection); // one of its actions may run
}

QString FileMenu::startFolder() const
{
    const QString last =
        m_document.file().name().isEmpty() ? recentFiles().value(0) : m_document.file().name();
    return last.isEmpty() ? QDir::homePath() : QFileInfo(last).path();
}
