// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLrcUtils.h>

#include "LookupProtocol.h"

#include <QVSongLrc/EncryptionTools.h>

#include <QDateTime>

using namespace QVSongLrcPrivate;

QString QVLrcUtils::generateLyricApiKey()
{
    const QString plain = LookupProtocol::KeyPrefix + QString::number(QDateTime::currentSecsSinceEpoch());
    const QString key = EncryptionTools::sharedEncryptionTools()->encryptString(
        plain, LookupProtocol::CipherKey, LookupProtocol::InitialisationVector.data());
    return key.isNull() ? QStringLiteral("") : key;
}
