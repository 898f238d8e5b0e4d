// SPDX-License-Identifier: MIT
#include "IcuTags.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

QString readable(QStringView text)
{
    QString shown;
    for (const QChar c : text)
        shown += c >= u' ' && c <= u'~' ? QString(c)
                                        : QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QChar(u'0'));
    return shown;
}

QByteArray listed(const TagMatches &matches)
{
    QByteArray list;
    for (const auto &[begin, end] : matches)
        list += '[' + QByteArray::number(begin) + ',' + QByteArray::number(end) + ')';
    return list;
}

// "" when scanner and ICU agree on a text, else what they found.
QByteArray disagreement(QStringView text)
{
    const TagMatches icuProperty = IcuTags::property().in(text);
    const TagMatches icuTime = IcuTags::time().in(text);
    if (scannedPropertyTags(text) == icuProperty && scannedTimeTags(text) == icuTime)
        return {};
    return "in \"" + readable(text).toLatin1() + "\" ICU finds property " + listed(icuProperty) + " time "
        + listed(icuTime) + ", the scanner property " + listed(scannedPropertyTags(text)) + " time "
        + listed(scannedTimeTags(text));
}

} // namespace

class TestTagScanner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timeTags_data();
    void timeTags();
    void propertyTags_data();
    void propertyTags();
    void agreesWithIcuOnRandomText();
    void takesLinearTime();
};

void TestTagScanner::timeTags_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("matches");
    const auto row = [](const char *name, const QString &text, const char *matches) {
        QTest::newRow(name) << text << QByteArray(matches);
    };
    row("usual", u"[01:02.50]x"_s, "[0,10)");
    row("short fields", u"[1:2.3]"_s, "[0,7)");
    row("several, text between", u"[00:01.00]a[00:02.00]b"_s, "[0,10)[11,21)");
    row("any separator", u"[1:2,3][1:2:3][1:2]3][1:2[3]"_s, "[0,7)[7,14)[14,21)[21,28)");
    row("second digit of the seconds given back", u"[1:234][01:2345][01:123]"_s, "[0,7)[7,16)[16,24)");
    row("longest reading first", u"[1:23]4]"_s, "[0,8)");
    row("no fraction", u"[01:02]"_s, "");
    row("three digits", u"[001:02.03][01:02.034][01:022.03]"_s, "");
    row("white space goes with the tag", u"a \t\u3000[1:2.3] \u0085[1:2.3] "_s, "[1,11)[11,20)");
    row("white space is shared with no one", u"[1:2.3]  [1:2.3]"_s, "[0,7)[7,16)");
    row("vertical tab, next line, line separator", u"\u000b\u0085\u2028[1:2.3]"_s, "[0,10)");
    row("not white space", u"\u200b[1:2.3]\u180e[1:2.3]\ufeff[1:2.3]\u001c[1:2.3]"_s,
        "[1,8)[9,16)[17,24)[25,32)");
    row("digits of other scripts", u"[\u0661:\u0967.\uff13]"_s, "[0,7)");
    row("digits beyond the basic plane", u"[\U0001D7CE\U0001D7CF:\U0001D7CE.\U0001D7CE]"_s, "[0,12)");
    row("number, but no decimal digit", u"[\u00b2:1.1][\u2160:1.1]"_s, "");
    row("separator: surrogate pair", u"[1:2\U0001F3B53]"_s, "[0,8)");
    row("separator: lone surrogates", u"[1:2"_s + QChar(0xD800) + u"3][1:2"_s + QChar(0xDC00) + u"3]"_s,
        "[0,7)[7,14)");
    row("separator: two lone surrogates, low first", u"[1:2"_s + QChar(0xDC00) + QChar(0xD800) + u"3]"_s, "");
    row("separator: line ends", u"[1:2\r\n3][1:2\n3][1:2\r3]"_s, "[0,8)[8,15)[15,22)");
    row("separator: CR LF the wrong way round", u"[1:2\n\r3]"_s, "");
    row("bracket in front", u"[[[1:2.3]"_s, "[2,9)");
    row("begun and begun again", u"[00:00.0[00:00.00]"_s, "[8,18)");
    row("cut off", u"[00:00.00"_s, "");
    row("cut off in the middle of a digit", u"[00:00."_s + QChar(0xD835), "");
    row("NUL", u"[1:2"_s + QChar(0) + u"3]"_s + QChar(0), "[0,7)");
}

void TestTagScanner::timeTags()
{
    QFETCH(const QString, text);
    QFETCH(const QByteArray, matches);
    QCOMPARE(listed(scannedTimeTags(text)), matches);
    QCOMPARE(disagreement(text), QByteArray());
}

void TestTagScanner::propertyTags_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("match");
    const auto row = [](const char *name, const QString &text, const char *match) {
        QTest::newRow(name) << text << QByteArray(match);
    };
    row("usual", u"[ar:Artist]"_s, "[0,11)");
    row("empty value", u"[ar:]"_s, "[0,5)");
    row("to the last bracket", u"x [ar:A][ti:T]y] z"_s, "[1,16)");
    row("over line ends", u"\r\n[ar:a\r\nb\n]"_s, "[0,12)");
    row("upper case", u"[AR:x][Ar:x][aR:x]"_s, "");
    row("letters outside ASCII", u"[\u00e4r:x][\uff41r:x]"_s, "");
    row("one and three letters", u"[a:x][art:x][offset:500]"_s, "");
    row("not closed", u"[ar:x"_s, "");
    row("closed only before", u"][ar:x"_s, "");
    row("closed before the value begins", u"[aa]:[bb:"_s, "");
    row("second key begins the tag", u"[a:[[ar:x]"_s, "[4,10)");
    row("cut off after the colon", u"[ar:"_s, "");
    row("cut off in the key", u"[a"_s, "");
}

void TestTagScanner::propertyTags()
{
    QFETCH(const QString, text);
    QFETCH(const QByteArray, match);
    QCOMPARE(listed(scannedPropertyTags(text)), match);
    QCOMPARE(disagreement(text), QByteArray());
}

// Texts of up to 24 pieces, the pieces such that tags, near-tags and their neighbours come often.
void TestTagScanner::agreesWithIcuOnRandomText()
{
    constexpr int Texts = 250'000;
    const std::array<QString, 48> pieces{u"["_s,
                                         u"["_s,
                                         u"["_s,
                                         u"]"_s,
                                         u"]"_s,
                                         u"]"_s,
                                         u":"_s,
                                         u":"_s,
                                         u":"_s,
                                         u"."_s,
                                         u"."_s,
                                         u"0"_s,
                                         u"1"_s,
                                         u"23"_s,
                                         u"9"_s,
                                         u"\u0660"_s,
                                         u"\u096f"_s,
                                         u"\uff10"_s,
                                         u"\U000104A0"_s,
                                         u"\U0001D7FF"_s,
                                         u"\U0001F3B5"_s,
                                         u"\u00b2"_s,
                                         u"a"_s,
                                         u"z"_s,
                                         u"ar"_s,
                                         u"A"_s,
                                         u"\u00e9"_s,
                                         u"\r"_s,
                                         u"\n"_s,
                                         u"\r\n"_s,
                                         u" "_s,
                                         u"\t"_s,
                                         u"\u000b"_s,
                                         u"\u0085"_s,
                                         u"\u00a0"_s,
                                         u"\u2028"_s,
                                         u"\u3000"_s,
                                         u"\u200b"_s,
                                         u"\u180e"_s,
                                         u"\ufeff"_s,
                                         u"\u001c"_s,
                                         QString(QChar(0xD835)),
                                         QString(QChar(0xDFCE)),
                                         QString(QChar(0)),
                                         u"[01:"_s,
                                         u"[ar:"_s,
                                         u"[00:12.34]"_s,
                                         u"2.3]"_s};

    QRandomGenerator random(20261122);
    int withTime = 0;
    int withProperty = 0;
    for (int i = 0; i < Texts; ++i) {
        QString text;
        for (quint32 n = random.bounded(25u); n > 0; --n)
            text += pieces[random.bounded(quint32(pieces.size()))];
        const QByteArray difference = disagreement(text);
        if (!difference.isEmpty())
            QFAIL(difference.constData());
        withTime += !scannedTimeTags(text).empty();
        withProperty += !scannedPropertyTags(text).empty();
    }
    // The comparison means nothing unless tags are among the texts.
    QVERIFY2(withTime > Texts / 50, QByteArray::number(withTime).constData());
    QVERIFY2(withProperty > Texts / 50, QByteArray::number(withProperty).constData());
}

// Far from the limit when linear (milliseconds), far beyond it when quadratic (hours).
void TestTagScanner::takesLinearTime()
{
    constexpr int Size = 8'000'000;
    for (const QString &piece : {u" "_s, u"[aa:"_s, u"[00:00.0"_s, u"["_s, u"]["_s, u"[aa:]"_s}) {
        const QString text = piece.repeated(Size / piece.size());
        QElapsedTimer timer;
        timer.start();
        scannedPropertyTags(text);
        scannedTimeTags(text);
        QVERIFY2(timer.elapsed() < 10'000, qPrintable(piece));
    }
}

QTEST_APPLESS_MAIN(TestTagScanner)
#include "tst_tagscanner.moc"
