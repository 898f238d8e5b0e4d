// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Corpus.h"

#include <QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;

namespace {

class Writer
{
public:
    // A song of about `lines` lines.
    QString song(int lines)
    {
        m_isLatin = below(3) != 0;
        QString text;
        for (const auto key : {"ti"_L1, "ar"_L1, "al"_L1, "by"_L1})
            text += u'[' + key + u':' + words(3) + u"]\n"_s;
        int time = 5'000;
        while (lines-- > 4) {
            time += 1'500 + below(5'000);
            if (below(12) == 0)
                text += u'\n';
            if (below(40) != 0) {
                text += tag(time);
                for (int again = below(8) == 0 ? 1 + below(2) : 0; again > 0; --again)
                    text += tag(time + 40'000 * again + below(1'000));
            }
            text += words(m_isLatin ? 3 + below(6) : 1 + below(2)) + u'\n';
        }
        return text;
    }

private:
    int below(int limit) { return int(m_random.bounded(limit)); }

    static QString tag(int milliseconds)
    {
        const auto field = [](int value) { return QString::number(value % 100).rightJustified(2, u'0'); };
        return u'[' + field(milliseconds / 60'000) + u':' + field(milliseconds / 1'000 % 60) + u'.'
            + field(milliseconds / 10) + u']';
    }

    QString words(int count)
    {
        static constexpr std::array Syllables{"ba", "lo", "mi", "ren", "sa", "tu", "vel", "ko"};
        QString text;
        for (; count > 0; --count) {
            for (int i = m_isLatin ? 1 + below(3) : 4 + below(5); i > 0; --i) {
                if (m_isLatin)
                    text += QLatin1StringView(Syllables[std::size_t(below(int(Syllables.size())))]);
                else
                    text += QChar(0x4e00 + below(3'000));
            }
            if (count > 1)
                text += u' ';
        }
        return text;
    }

    QRandomGenerator m_random{20'261'123};
    bool m_isLatin = true;
};

} // namespace

namespace Corpus {

void Texts::add(const QString &song)
{
    songs.push_back(song);
    lineCount += song.count(u'\n');
}

Texts songs(int count)
{
    Writer writer;
    Texts texts;
    for (int i = 0; i < count; ++i)
        texts.add(writer.song(30 + i % 90));
    return texts;
}

Texts oneSong()
{
    Texts texts;
    QString text = Writer().song(80);
    while (text.count(u'\n') > 63)
        text.truncate(text.lastIndexOf(u'\n', -2) + 1);
    texts.add(text);
    return texts;
}

Texts bigText()
{
    Writer writer;
    QString text;
    for (qsizetype size = 0; size < 32'000'000;) {
        const QString song = writer.song(80);
        size += song.toUtf8().size();
        text += song;
    }
    text.squeeze();
    Texts texts;
    texts.add(text);
    return texts;
}

} // namespace Corpus
