// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "BestMatch.h"

#include "EditDistance.h"
#include "Likeness.h"
#include "SafeModel.h"

#include <QVSongLrc/QVSongLrcConstants.h>

#include <algorithm>

namespace QVSongLrcPrivate {
namespace {

/// The greatest distance at which a text of \p length code units scores above \p score; negative when there is
/// none.
qint64 distanceToBeat(float score, qint64 length)
{
    // Scores are floats, so this is only a guess.
    qint64 distance = qint64((100.0 - double(score)) * double(length) / 100.0);
    while (likenessAtDistance(distance + 1, length) > score)
        ++distance;
    while (distance >= 0 && !(likenessAtDistance(distance, length) > score))
        --distance;
    return distance;
}

} // namespace

qsizetype bestMatch(const QList<QJsonObject> &candidates, const QString &query, const std::stop_token &stop)
{
    qsizetype best = 0;
    float bestScore = -1; // a candidate is chosen only if it scores more
    for (qsizetype index = 0; index < candidates.size() && !stop.stop_requested(); ++index) {
        const QJsonObject &candidate = candidates[index];
        const QString text = stringForKeySafeModel(candidate, Key_Lyric_Trackname)
            + stringForKeySafeModel(candidate, Key_Lyric_Artist);
        float score = float(text.size() + query.size()); // as Distance::likePercent() scores an empty text
        if (!text.isEmpty() && !query.isEmpty()) {
            const qint64 furthest =
                std::min<qint64>(distanceToBeat(bestScore, text.size()), std::max(text.size(), query.size()));
            const qint64 distance = editDistance(text, query, furthest, stop);
            if (distance > furthest)
                continue;
            score = likenessAtDistance(distance, text.size());
        }
        if (score > bestScore) {
            best = index;
            bestScore = score;
        }
    }
    return best;
}

} // namespace QVSongLrcPrivate
