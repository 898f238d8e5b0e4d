// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricError.h>

QString QVLyricError::description() const
{
    const QString start = QStringLiteral("Error Domain=%1 Code=%2").arg(domain, QString::number(code));
    return localizedDescription.isNull() ? start
                                         : start + QStringLiteral(" \"%1\"").arg(localizedDescription);
}
