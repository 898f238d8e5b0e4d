// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Manual pages and completions say what --help says; and the completions work in their shells.

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Lists = QMap<QString, QStringList>;

QString output(const QString &program, const QStringList &arguments, const QString &folder = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    process.waitForFinished(60'000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList captured(const QString &text, const QString &pattern)
{
    QStringList found;
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    for (const auto &match : expression.globalMatch(text))
        found += match.captured(1);
    return found;
}

// The options of a program and of each of its commands, by what calls it, as --help tells them.
Lists optionsInHelp(const QString &call)
{
    const QString program = call.section(u' ', 0, 0);
    const QStringList command = call.split(u' ').sliced(1);
    const QString text = output(QStringLiteral(PROGRAMS "/") + program, command + QStringList{u"--help"_s});
    QStringList options = captured(text, u"^  (-\\S+)"_s).join(u',').split(u',');
    options.sort();
    Lists found{{call, options}};
    for (const QString &each : captured(text.section(u"Subcommands:"_s, 1), u"^  (\\w+)"_s))
        found.insert(optionsInHelp(call + u' ' + each));
    return found;
}

// The same, as the manual page tells them.
Lists optionsInPage(const QString &program)
{
    QFile page(QStringLiteral(SHARE "/man/man1/%1.1").arg(program));
    if (!page.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = QString::fromUtf8(page.readAll()).split(u'\n');
    Lists found;
    QString call = program;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (lines[i].startsWith(u".SS "))
            found[call = program + lines[i].sliced(3)] = {u"--help"_s, u"-h"_s}; // told once for all
        else if (lines[i].startsWith(u".SH "))
            call = lines[i] == u".SH OPTIONS" ? program : QString();
        else if (lines[i - 1] == u".TP" && !call.isEmpty())
            found[call] += captured(lines[i], u"\\\\fB(\\\\-.*?)\\\\fR"_s).replaceInStrings(u"\\-"_s, u"-"_s);
    }
    for (QStringList &options : found)
        options.sort();
    return found;
}

// What a shell offers for each of the lines.
Lists offersOf(const QString &shell, const QStringList &lines, const QString &folder)
{
    QStringList arguments{QStringLiteral(SCRIPTS "/complete.") + shell};
    if (shell == u"zsh")
        arguments.prepend(u"-f"_s);
    arguments += shell == u"zsh" ? QStringLiteral(SHARE "/zsh/vendor-completions")
                                 : QStringLiteral(SHARE "/bash-completion/completions");
    Lists found;
    QString line;
    for (const QString &each : output(shell, arguments + lines, folder).split(u'\n', Qt::SkipEmptyParts)) {
        if (each.startsWith(u"= "))
            found[line = each.sliced(2)] = {};
        else
            found[line] += each;
    }
    for (QStringList &offered : found) {
        offered.removeDuplicates(); // zsh tries a file's name in several ways
        offered.sort();
    }
    return found;
}

} // namespace

class TestManual : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString &program : m_programs)
            m_options.insert(optionsInHelp(program));
    }

    void pagesTellWhatHelpTells()
    {
        Lists inPages;
        for (const QString &program : m_programs)
            inPages.insert(optionsInPage(program));
        QCOMPARE(inPages.keys(), m_options.keys());
        for (auto [call, options] : m_options.asKeyValueRange()) {
            QVERIFY2(options.contains(u"--help"), qPrintable(call));
            QCOMPARE(inPages[call], options);
        }
    }

    void shellsOffer_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::newRow("bash") << u"bash"_s;
        QTest::newRow("zsh") << u"zsh"_s;
    }
    void shellsOffer()
    {
        QFETCH(const QString, shell);
        if (QStandardPaths::findExecutable(shell).isEmpty())
            QSKIP("the shell is not installed");
        Lists expected{
            {u"songlrc pa"_s, {u"parse"_s}},
            {u"songlrc format --output"_s, {u"--output"_s, u"--output-encoding"_s}},
            {u"songlrc parse song"_s, {u"song.lrc"_s}},
            {u"songlrc compare song.lrc so"_s, {u"song.lrc"_s}},
            {u"songlrc fetch --ca-file so"_s, {u"song.lrc"_s}},
            {u"songlrc format --output=so"_s, {u"song.lrc"_s}},
            {u"songlrc shift --by "_s, {}},
            {u"songlrc search so"_s, {}},
            {u"songlrc-editor so"_s, {u"song.lrc"_s}},
            {u"songlrc-service --data "_s, {u"folder"_s}},
            {u"songlrc-service --library=fo"_s, {u"folder"_s}},
        };
        for (auto [call, options] : m_options.asKeyValueRange())
            expected[call + u" -"_s] = options;
        expected.removeIf([this](auto line) { return !m_programs.contains(line.key().section(u' ', 0, 0)); });
        const QTemporaryDir folder;
        QFile song(folder.filePath(u"song.lrc"_s));
        QVERIFY(song.open(QIODevice::WriteOnly) && QDir(folder.path()).mkdir(u"folder"_s));
        const Lists offered = offersOf(shell, expected.keys(), folder.path());
        QCOMPARE(offered.keys(), expected.keys());
        for (auto [line, options] : expected.asKeyValueRange())
            QVERIFY2(offered[line] == options, qPrintable(line + u": "_s + offered[line].join(u' ')));
    }

private:
    const QStringList m_programs = QStringLiteral(PROGRAM_NAMES).split(u' ');
    Lists m_options; // by call
};

QTEST_GUILESS_MAIN(TestManual)
#include "tst_manual.moc"
