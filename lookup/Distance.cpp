// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/Distance.h>

#include "EditDistance.h"
#include "Likeness.h"

#include <algorithm>

using namespace QVSongLrcPrivate;

float Distance::likePercent(QStringView receiver, QStringView argument)
{
    if (receiver.isEmpty() || argument.isEmpty())
        return float(receiver.size() + argument.size());
    const qint64 furthest = std::max(receiver.size(), argument.size());
    return likenessAtDistance(editDistance(receiver, argument, furthest), receiver.size());
}
