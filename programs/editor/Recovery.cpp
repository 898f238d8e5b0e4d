// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Recovery.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + u"/recovery"_s;
}

// Null if another program holds it.
std::unique_ptr<QLockFile> lock(const QString &recoveryFile)
{
    auto file = std::make_unique<QLockFile>(recoveryFile + u".lock"_s);
    file->setStaleLockTime(0); // never stale while its program runs
    return file->tryLock() ? std::move(file) : nullptr;
}

QJsonObject readJson(const QString &recoveryFile)
{
    QFile file(recoveryFile);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

} // namespace

Recovery::Recovery(SongModel &song)
    : m_song(song)
    , m_file(u"%1/%2.json"_s.arg(folder(), QUuid::createUuid().toString(QUuid::WithoutBraces)))
{
    m_writer.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(300);
    connect(&m_timer, &QTimer::timeout, this, &Recovery::write);
    const auto songChanged = [this] {
        if (!m_song.isModified()) {
            remove();
            Q_EMIT written({});
        } else if (!m_timer.isActive()) { // further edits do not delay it
            m_timer.start();
        }
    };
    connect(&song.undoStack(), &QUndoStack::indexChanged, this, songChanged);
    connect(&song.undoStack(), &QUndoStack::cleanChanged, this, songChanged);
}

Recovery::~Recovery()
{
    remove();
}

QStringList Recovery::abandoned()
{
    QStringList files;
    const QDir directory(folder());
    for (const QString &name : directory.entryList({u"*.json"_s}, QDir::Files, QDir::Time)) {
        const QString file = directory.filePath(name);
        if (lock(file))
            files += file;
    }
    return files;
}

QString Recovery::songOf(const QString &recoveryFile)
{
    return readJson(recoveryFile)["file"_L1].toString();
}

bool Recovery::takeOver(const QString &recoveryFile)
{
    auto fileLock = lock(recoveryFile);
    const QJsonObject json = readJson(recoveryFile);
    if (!fileLock || !json.contains("text"_L1))
        return false;
    m_song.replaceSong(SongFile::fromJson(json), json["text"_L1].toString());
    m_song.undoStack().resetClean(); // its changes are unsaved
    remove();                        // the file that this object had before
    m_file = recoveryFile;
    m_lock = std::move(fileLock);
    return true;
}

void Recovery::discard(const QString &recoveryFile)
{
    if (lock(recoveryFile))
        QFile::remove(recoveryFile);
}

void Recovery::write()
{
    QDir().mkpath(folder());
    if (!m_lock)
        m_lock = lock(m_file);
    QJsonObject json = m_song.file().toJson();
    json["text"_L1] = m_song.exactText();
    m_writer.start([this, name = m_file, json] {
        QSaveFile file(name);
        const QByteArray bytes = QJsonDocument(json).toJson(QJsonDocument::Compact);
        // commit() ignores a failing flush() and would replace a good file by an empty one.
        const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
            && file.flush() && file.commit();
        Q_EMIT written(isWritten ? QString()
                                 : tr("Can't write the recovery file %1: %2").arg(name, file.errorString()));
    });
}

void Recovery::remove()
{
    m_timer.stop();
    m_writer.waitForDone();
    if (m_lock)
        QFile::remove(m_file);
    m_lock.reset();
}
