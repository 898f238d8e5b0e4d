// SPDX-License-Identifier: MIT
#include "FileMenu.h"

#include "Command.h"
#include "support/TextFile.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MostRecent = 9; // as there are digits for their keys
const QLatin1StringView RecentKey("recentFiles");

QString shortName(const QString &name)
{
    return QFileInfo(name).fileName();
}

} // namespace

FileMenu::FileMenu(SongDocument &document, QWidget *parent)
    : QMenu(tr("&File"), parent)
    , m_document(document)
{
    const auto icon = [this](QStyle::StandardPixmap pixmap) { return style()->standardIcon(pixmap); };
    addCommand(this, "newAction", tr("&New"), Qt::CTRL | Qt::Key_N, tr("Begin a song"), this,
               &FileMenu::newSong)
        ->setIcon(icon(QStyle::SP_FileIcon));
    addCommand(this, "openAction", tr("&Open…"), Qt::CTRL | Qt::Key_O, tr("Open a lyric file"), this,
               &FileMenu::chooseFile)
        ->setIcon(icon(QStyle::SP_DialogOpenButton));
    m_recent = addMenu(tr("Open &Recent"));
    m_recent->setObjectName(u"recentMenu"_s);
    addSeparator();
    addCommand(this, "saveAction", tr("&Save"), Qt::CTRL | Qt::Key_S, tr("Save the song to its file"), this,
               &FileMenu::save)
        ->setIcon(icon(QStyle::SP_DialogSaveButton));
    addCommand(this, "saveAsAction", tr("Save &As…"), Qt::CTRL | Qt::SHIFT | Qt::Key_S,
               tr("Save the song to another file"), this, &FileMenu::saveAs);
    addSeparator();
    addCommand(this, "closeAction", tr("&Close"), Qt::CTRL | Qt::Key_W, tr("Close the window"), parent,
               [parent] { parent->close(); });
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
    if (!m_document.isModified())
        return true;
    const QString name = m_document.file().name();
    const auto answer = QMessageBox::warning(
        parentWidget(), tr("Unsaved Changes"),
        name.isEmpty() ? tr("The song has not been saved. Save it?")
                       : tr("Save the changes to “%1”?").arg(shortName(name)),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

bool FileMenu::save()
{
    Q_EMIT aboutToLook();
    const QString name = m_document.file().name();
    if (name.isEmpty())
        return saveAs();
    if (m_document.file().hasChangedOnDisk()) {
        const auto answer = QMessageBox::warning(
            parentWidget(), tr("File Changed"),
            tr("“%1” has changed on disk since it was opened. Save over what is there now?")
                .arg(shortName(name)),
            QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Save)
            return false;
    }
    return write(name);
}

bool FileMenu::saveAs()
{
    Q_EMIT aboutToLook();
    QString name = m_document.file().name();
    if (name.isEmpty())
        name = startFolder() + u"/song.lrc"_s;
    name = QFileDialog::getSaveFileName(parentWidget(), tr("Save Lyric"), name,
                                        tr("Lyrics (*.lrc);;All files (*)"));
    return !name.isEmpty() && write(name);
}

bool FileMenu::write(const QString &name)
{
    if (!m_document.file().canHold(m_document.text())) {
        const auto answer = QMessageBox::question(
            parentWidget(), tr("Save in UTF-8"),
            tr("The file's encoding, %1, lacks characters that the song now has. Save the file in UTF-8?")
                .arg(QString::fromLatin1(m_document.file().encodingName())),
            QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Yes);
        if (answer != QMessageBox::Yes)
            return false;
        m_document.file().useUtf8();
    }
    try {
        name == m_document.file().name() ? m_document.save() : m_document.saveAs(name);
    } catch (const FileError &error) {
        QMessageBox::critical(parentWidget(), tr("Not Saved"),
                              tr("The song could not be saved.\n%1").arg(QString::fromUtf8(error.what())));
        return false;
    }
    m_knowsOfChange = false;
    remember(m_document.file().name());
    Q_EMIT message(tr("Saved %1").arg(m_document.file().name()));
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
    m_isAsking = true;
    m_knowsOfChange = true;
    const QString name = m_document.file().name();
    const auto answer = QMessageBox::question(
        parentWidget(), tr("File Changed"),
        (m_document.isModified() ? tr("“%1” has changed on disk. Read it again, and give up your changes?")
                                 : tr("“%1” has changed on disk. Read it again?"))
            .arg(shortName(name)),
        QMessageBox::Yes | QMessageBox::No, m_document.isModified() ? QMessageBox::No : QMessageBox::Yes);
    if (answer == QMessageBox::Yes)
        read(name);
    m_isAsking = false;
}

void FileMenu::showRecent()
{
    m_recent->clear();
    const QStringList names = QSettings().value(RecentKey).toStringList();
    for (qsizetype i = 0; i < names.size() && i < MostRecent; ++i) {
        const QString title = u"&%1 %2"_s.arg(i + 1).arg(shortName(names[i]).replace(u'&', u"&&"_s));
        addCommand(m_recent, "recentAction", title, QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)),
                   tr("Open %1").arg(names[i]), this, [this, name = names[i]] { open(name); });
    }
    m_recent->setEnabled(!names.isEmpty());
}

void FileMenu::remember(const QString &name)
{
    QSettings settings;
    QStringList names = settings.value(RecentKey).toStringList();
    names.removeAll(name);
    names.prepend(name);
    settings.setValue(RecentKey, names.first(std::min(names.size(), MostRecent)));
    QMetaObject::invokeMethod(this, &FileMenu::showRecent,
                              Qt::QueuedConnection); // one of its actions may run
}

QString FileMenu::startFolder() const
{
    const QString name = m_document.file().name();
    if (!name.isEmpty())
        return QFileInfo(name).path();
    const QStringList recent = QSettings().value(RecentKey).toStringList();
    return recent.isEmpty() ? QDir::homePath() : QFileInfo(recent.first()).path();
}
