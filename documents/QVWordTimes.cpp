// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVWordTimes.h>

#include "model/Saturating.h"
#include "model/TimeForm.h"

using namespace QVSongLrcPrivate;

std::optional<QString> QVWordTimes::shifted(const QString &text, qint64 milliseconds, BelowZero belowZero,
                                            QVTextRange *failedAt)
{
    const QStringView view = text;
    QString result;
    qsizetype copied = 0;
    for (qsizetype at = view.indexOf(u'<'); at >= 0; at = view.indexOf(u'<', at)) {
        auto time = TimeForm::read(view, at, u'>');
        if (!time || time->fractionDigits == 0 || !time->isAscii) {
            ++at;
            continue;
        }
        qint64 moved = Saturating::add(time->milliseconds, milliseconds);
        if (moved > TimeForm::Limit || (moved < 0 && belowZero == BelowZero::Fails)) {
            if (failedAt)
                *failedAt = {quint64(at), quint64(time->length)};
            return std::nullopt;
        }
        if (moved < 0) {
            moved = 0;
            time->fraction = {};
        }
        result += view.sliced(copied, at - copied);
        result += TimeForm::wordTag(moved, *time);
        at += time->length;
        copied = at;
    }
    if (copied == 0)
        return text;
    result += view.sliced(copied);
    return result;
}
