// SPDX-License-Identifier: MIT
#include "Recovery.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + u"/recovery"_s;
}

QString lockOf(const QString &file)
{
    return file + u".lock"_s;
}

// The system drops the lock when its holder ends, however that ends. -1 when another holds it.
int lockFile(const QString &file)
{
    const int descriptor =
        ::open(QFile::encodeName(lockOf(file)).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

QJsonObject readJson(const QString &recoveryFile)
{
    QFile file(recoveryFile);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

// Says what went wrong.
QString writeJson(const QString &recoveryFile, const QJsonObject &json)
{
    QSaveFile file(recoveryFile);
    const QByteArray bytes = QJsonDocument(json).toJson(QJsonDocument::Compact);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return file.errorString();
    return {};
}

} // namespace

Recovery::Recovery(SongDocument &document, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_file(u"%1/%2.json"_s.arg(folder(), QUuid::createUuid().toString(QUuid::WithoutBraces)))
{
    m_writer.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(300);
    connect(&m_timer, &QTimer::timeout, this, &Recovery::write);
    const auto documentChanged = [this] {
        if (!m_document.isModified())
            remove();
        else if (!m_timer.isActive()) // not put off by further edits
            m_timer.start();
    };
    connect(&document.undoStack(), &QUndoStack::indexChanged, this, documentChanged);
    connect(&document.undoStack(), &QUndoStack::cleanChanged, this, documentChanged);
}

Recovery::~Recovery()
{
    remove();
}

QStringList Recovery::left()
{
    QStringList files;
    const QDir directory(folder());
    for (const QString &name : directory.entryList({u"*.json"_s}, QDir::Files, QDir::Time)) {
        const QString file = directory.filePath(name);
        if (const int descriptor = lockFile(file); descriptor >= 0) {
            ::close(descriptor);
            files += file;
        }
    }
    return files;
}

QString Recovery::songOf(const QString &recoveryFile)
{
    return readJson(recoveryFile)["file"_L1].toString();
}

bool Recovery::takeOver(const QString &recoveryFile)
{
    const int descriptor = lockFile(recoveryFile);
    const QJsonObject json = readJson(recoveryFile);
    if (descriptor < 0 || !json.contains("text"_L1)) {
        ::close(descriptor);
        return false;
    }
    m_document.restore(SongFile::fromJson(json), json["text"_L1].toString());
    remove(); // what this object had before
    m_file = recoveryFile;
    m_lock = descriptor;
    return true;
}

void Recovery::discard(const QString &recoveryFile)
{
    QFile::remove(recoveryFile);
    QFile::remove(lockOf(recoveryFile));
}

bool Recovery::lock()
{
    QDir().mkpath(folder());
    if (m_lock < 0)
        m_lock = lockFile(m_file);
    return m_lock >= 0;
}

void Recovery::write()
{
    if (!lock()) {
        Q_EMIT written(QDir(folder()).exists() ? tr("%1 can't be written").arg(m_file)
                                               : tr("%1 can't be made").arg(folder()));
        return;
    }
    m_writer.start(
        [this, file = m_file, json = m_document.file().toJson(), text = m_document.text()]() mutable {
            json["text"_L1] = text;
            const QString why = writeJson(file, json);
            QMetaObject::invokeMethod(this, [this, why] { Q_EMIT written(why); });
        });
}

void Recovery::remove()
{
    m_timer.stop();
    m_writer.waitForDone();
    if (m_lock < 0)
        return;
    discard(m_file);
    ::close(std::exchange(m_lock, -1));
}
