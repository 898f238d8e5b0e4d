// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongFile.h"

#include "programs/common/TextFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

std::string encoded(const QString &name)
{
    return QFile::encodeName(name).toStdString();
}

QByteArray hashOf(const QString &name)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QFile file(name);
    // Reading a device or a pipe may never end.
    if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result();
}

} // namespace

SongFile SongFile::read(const QString &name, QString &text)
{
    SongFile file;
    file.setName(name);
    if (const QFileInfo info(file.m_name); info.exists() && !info.isFile())
        throw FileError(encoded(file.m_name), "not a file");
    file.m_hash = hashOf(file.m_name);
    auto decoded = readTextFile(encoded(file.m_name));
    file.m_encoding = decoded.encoding;
    // A song's lines end at line feeds. If all of them are CR LF, the CRs belong to the file, not to the song.
    file.m_hasCrLf =
        decoded.text.contains(u'\n') && decoded.text.count(u'\n') == decoded.text.count("\r\n"_L1);
    text = file.m_hasCrLf ? decoded.text.replace("\r\n"_L1, "\n"_L1) : decoded.text;
    return file;
}

void SongFile::write(const QString &text)
{
    writeTextFile(encoded(m_name), m_hasCrLf ? QString(text).replace(u'\n', "\r\n"_L1) : text, m_encoding);
    m_hash = hashOf(m_name);
}

bool SongFile::canHold(const QString &text) const
{
    return encodeText(text, m_encoding).has_value();
}

bool SongFile::hasChangedOnDisk() const
{
    return QFileInfo::exists(m_name) && hashOf(m_name) != m_hash;
}

bool SongFile::isGone() const
{
    return !m_name.isEmpty() && !QFileInfo::exists(m_name);
}

QString SongFile::shortName() const
{
    return QFileInfo(m_name).fileName();
}

void SongFile::setName(const QString &name)
{
    m_name = QFileInfo(name).absoluteFilePath();
}

QJsonObject SongFile::toJson() const
{
    return {{u"file"_s, m_name},
            {u"encoding"_s, QString::fromLatin1(m_encoding.name)},
            {u"hasMark"_s, m_encoding.hasMark},
            {u"hasCrLf"_s, m_hasCrLf},
            {u"hash"_s, QString::fromLatin1(m_hash.toHex())}};
}

SongFile SongFile::fromJson(const QJsonObject &json)
{
    SongFile file;
    file.m_name = json["file"_L1].toString();
    file.m_encoding = {json["encoding"_L1].toString().toLatin1(), json["hasMark"_L1].toBool()};
    file.m_hasCrLf = json["hasCrLf"_L1].toBool();
    file.m_hash = QByteArray::fromHex(json["hash"_L1].toString().toLatin1());
    return file;
}
