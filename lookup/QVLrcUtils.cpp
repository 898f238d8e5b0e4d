// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLrcUtils.h>

#include "RequestKey.h"

#include <QVSongLrc/EncryptionTools.h>

#include <QDateTime>

using namespace QVSongLrcPrivate;

QString QVLrcUtils::generateLyricApiKey()
{
    const QString plain = RequestKey::Prefix + QString::number(QDateTime::currentSecsSinceEpoch());
    const QString key = EncryptionTools::sharedEncryptionTools()->encryptString(
        plain, RequestKey::Key,
        QByteArray(RequestKey::InitialisationVector.data(), RequestKey::InitialisationVector.size()));
    return key.isNull() ? QStringLiteral("") : key;
}
