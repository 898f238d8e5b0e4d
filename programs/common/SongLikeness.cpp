// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongLikeness.h"

#include <QVSongLrc/Distance.h>

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

template <size_t Size>
bool isOneOf(const std::array<QLatin1StringView, Size> &words, const QString &word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

QStringList wordsOf(const QString &text)
{
    QString letters = text;
    for (QChar &c : letters) {
        if (!c.isLetterOrNumber() && !c.isSurrogate() && !c.isMark())
            c = u' ';
    }
    return letters.simplified().split(u' ', Qt::SkipEmptyParts);
}

QString withoutBrackets(QString text)
{
    for (const auto &[open, close] : {std::pair(u'(', u')'), {u'[', u']'}, {u'{', u'}'}, {u'【', u'】'}}) {
        QString rest;
        qsizetype copied = 0; // up to here
        for (qsizetype begin = text.indexOf(open); begin >= 0; begin = text.indexOf(open, copied)) {
            const qsizetype end = text.indexOf(close, begin);
            if (end < 0)
                break;
            rest += QStringView(text).sliced(copied, begin - copied);
            rest += u' ';
            copied = end + 1;
        }
        rest += QStringView(text).sliced(copied);
        text = rest;
    }
    return text;
}

// " - Live in Quendle" and its like cut off.
QString withoutVersion(const QString &text)
{
    constexpr std::array Versions{"live"_L1, "remaster"_L1, "remastered"_L1, "acoustic"_L1,
                                  "demo"_L1, "version"_L1,  "edit"_L1,       "mix"_L1};
    const qsizetype dash = text.lastIndexOf(" - "_L1);
    const QStringList words = wordsOf(text.sliced(std::max<qsizetype>(dash, 0)));
    const bool isVersion = dash > 0 && std::any_of(words.begin(), words.end(), [&](const QString &word) {
                               return isOneOf(Versions, word);
                           });
    return isVersion ? text.first(dash) : text;
}

QString withoutAdditions(const QString &text)
{
    constexpr std::array Guests{"feat"_L1, "ft"_L1, "featuring"_L1};
    QStringList words = wordsOf(withoutVersion(withoutBrackets(text)));
    const auto guest = std::find_if(words.cbegin() + !words.isEmpty(), words.cend(),
                                    [&](const QString &word) { return isOneOf(Guests, word); });
    words.erase(guest, words.cend());
    return words.join(u' ');
}

// These make another letter, where other marks are accents.
bool isVoicedSoundMark(QChar c)
{
    return c == u'\u3099' || c == u'\u309A';
}

QString folded(const QString &text)
{
    QString plain = text.normalized(QString::NormalizationForm_KD);
    plain.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing && !isVoicedSoundMark(c); });
    plain = plain.toCaseFolded().replace(u'ß', "ss"_L1);
    for (QChar &c : plain) {
        if (c.category() == QChar::Punctuation_Dash)
            c = u'-';
    }
    // A title such as "(...)" is all addition, and "!!!" all punctuation.
    for (const QString &candidate : {withoutAdditions(plain), wordsOf(plain).join(u' ')}) {
        if (!candidate.isEmpty())
            return candidate;
    }
    return plain.simplified();
}

} // namespace

int songLikeness(const SongName &asked, const SongName &found)
{
    double length = 0;
    double alike = 0;
    for (QString SongName::*part : {&SongName::title, &SongName::artist}) {
        if ((asked.*part).isEmpty())
            continue;
        QString longer = folded(asked.*part);
        QString shorter = folded(found.*part);
        if (shorter.size() > longer.size())
            longer.swap(shorter);
        length += double(longer.size());
        if (!shorter.isEmpty()) // likePercent() would return a length
            alike += double(longer.size()) * double(Distance::likePercent(longer, shorter));
    }
    return length == 0 ? 0 : int(std::lround(alike / length));
}
