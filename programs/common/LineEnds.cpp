// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineEnds.h"

#include <algorithm>

LineEnds LineEnds::of(QStringView text)
{
    constexpr QLatin1StringView Lf("\n"), CrLf("\r\n"), Cr("\r");
    const qsizetype crLfs = text.count(CrLf);
    const qsizetype lfs = text.count(u'\n') - crLfs;
    const qsizetype crs = text.count(u'\r') - crLfs;
    const QLatin1StringView end = crLfs > std::max(lfs, crs) ? CrLf : crs > std::max(lfs, crLfs) ? Cr : Lf;
    return {end, text.endsWith(u'\n') || text.endsWith(u'\r')};
}

QString LineEnds::applied(const QString &text) const
{
    QString result = isLastEnded || !text.endsWith(u'\n') ? text : text.chopped(1);
    return end == QLatin1StringView("\n") ? result : result.replace(u'\n', end);
}
