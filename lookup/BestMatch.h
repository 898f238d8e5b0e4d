// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

#include <stop_token>

namespace QVSongLrcPrivate {

/// The index in \p candidates of the one that is most like \p query; 0 when all of them are too different, or
/// there are none. After a stop request it returns soon, with any index.
qsizetype bestMatch(const QList<QJsonObject> &candidates, const QString &query,
                    const std::stop_token &stop = {});

} // namespace QVSongLrcPrivate
