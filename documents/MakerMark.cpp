// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVEditSong.h>

#include "model/QVSongLine_p.h"
#include "model/Saturating.h"

#include <QCoreApplication>

#include <algorithm>

using namespace QVSongLrcPrivate;

namespace {

constexpr QStringView MakerName = u"Quendle";
constexpr QStringView MakerHost = u"" QVSONGLRC_MAKER_HOST;
constexpr QStringView MakerAddress = u"https://" QVSONGLRC_MAKER_HOST;

// Both lines of the mark are format strings without arguments: "%%" stands for "%", any other "%" for itself.
QString formatted(QString text)
{
    return text.replace(QLatin1StringView("%%"), QLatin1StringView("%"));
}

std::shared_ptr<QVSongLine> timedLine(qint64 milliseconds, const QString &text)
{
    auto line = std::make_shared<QVSongLine>();
    line->setLineText(text);
    line->appendTime(milliseconds);
    return line;
}

} // namespace

bool QVEditSong::insertCopyrightMark()
{
    constexpr qsizetype LastGap = 10;
    const QVSongLineList &lines = *std::as_const(*this).aryLines();
    const auto firstTime = [&lines](qsizetype index) { return lines[index] ? lines[index]->firstTime() : 0; };

    qint64 previousGap = 0;
    qsizetype anchor = -1;
    qint64 anchorTime = 0;
    for (qsizetype i = 0; i <= LastGap && i + 1 < lines.size(); ++i) {
        const qint64 gap = Saturating::subtract(firstTime(i + 1), firstTime(i));
        // Intended: each gap is compared with the previous gap, not with the largest so far.
        if (gap > previousGap) {
            anchor = i;
            anchorTime = firstTime(i);
        }
        previousGap = gap;
    }

    const auto mentions = [&lines](QStringView words) {
        return std::any_of(lines.cbegin(), lines.cend(),
                           [words](const auto &line) { return line && line->textView().contains(words); });
    };
    if (mentions(MakerName) && mentions(MakerHost))
        return false;

    const QString name = formatted(QCoreApplication::translate("QVEditSong", "Maker Tool: Quendle"));
    aryLines()->insert(anchor + 1, timedLine(Saturating::add(anchorTime, 300), name));
    aryLines()->insert(anchor + 2,
                       timedLine(Saturating::add(anchorTime, 700), formatted(MakerAddress.toString())));
    updateSongText();
    return true;
}
