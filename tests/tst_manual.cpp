// SPDX-License-Identifier: MIT

// Manual pages and completions say what --help says; and the completions work in their shells.

#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Line
{
    const char *typed;
    QStringList offered;
};

QString output(const QString &program, const QStringList &arguments, const QString &folder = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    process.waitForFinished(60'000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString help(const QString &program, const QString &command = {})
{
    QStringList arguments{command, u"--help"_s};
    arguments.removeAll(QString());
    return output(QStringLiteral(PROGRAMS "/") + program, arguments);
}

QStringList captured(const QString &text, const QString &pattern)
{
    QStringList found;
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    for (const auto &match : expression.globalMatch(text))
        found += match.captured(1);
    return found;
}

QStringList optionsInHelp(const QString &text)
{
    QStringList found;
    const QStringList lists = captured(text, u"^  (-\\S+)"_s);
    for (const QString &names : lists)
        found += names.split(u',');
    found.sort();
    return found;
}

// Of a command, or of the program itself.
QStringList optionsInPage(const QString &program, const QString &command)
{
    QFile page(QStringLiteral(SHARE "/man/man1/%1.1").arg(program));
    if (!page.open(QIODevice::ReadOnly))
        return {};
    const QString heading = command.isEmpty() ? u".SH OPTIONS\n"_s : u".SS "_s + command + u'\n';
    const QString section = QString::fromUtf8(page.readAll()).section(heading, 1).section(u"\n.S"_s, 0, 0);
    QStringList found;
    const QStringList headings = captured(section, u"^\\.TP\\n(.*)"_s);
    for (const QString &names : headings)
        found += captured(names, u"\\\\fB(\\\\-.*?)\\\\fR"_s);
    found.replaceInStrings(u"\\-"_s, u"-"_s);
    found += command.isEmpty() ? QStringList() : QStringList{u"-h"_s, u"--help"_s}; // told once for all
    found.sort();
    return found;
}

// What a shell offers for each of the lines; nothing at all where there is no such shell.
QHash<QString, QStringList> offers(const QString &shell, const QString &completions, const QStringList &lines,
                                   const QString &folder)
{
    if (QStandardPaths::findExecutable(shell).isEmpty())
        return {};
    QStringList arguments{QStringLiteral(SCRIPTS "/complete.") + shell,
                          QStringLiteral(SHARE "/") + completions};
    if (shell == u"zsh"_s)
        arguments.prepend(u"-f"_s);
    QHash<QString, QStringList> found;
    QString line;
    const QStringList told = output(shell, arguments + lines, folder).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &each : told) {
        if (each.startsWith(u"= "_s))
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
    void initTestCase();
    void tellsWhatHelpTells_data();
    void tellsWhatHelpTells();
    void offers_data();
    void offers();

private:
    const QStringList m_programs = QStringLiteral(PROGRAM_NAMES).split(u' ');
    const QList<Line> m_lines{
        {"songlrc pa", {u"parse"_s}},
        {"songlrc format --output", {u"--output"_s, u"--output-encoding"_s}},
        {"songlrc parse song", {u"song.lrc"_s}},
        {"songlrc compare song.lrc so", {u"song.lrc"_s}},
        {"songlrc fetch --ca-file so", {u"song.lrc"_s}},
        {"songlrc format --output=so", {u"song.lrc"_s}},
        {"songlrc shift --by ", {}},
        {"songlrc search so", {}},
        {"songlrc-editor so", {u"song.lrc"_s}},
        {"songlrc-service --data fo", {u"folder"_s}},
        {"songlrc-service --library=fo", {u"folder"_s}},
    };
    QHash<QString, QHash<QString, QStringList>> m_commands; // a program's commands, and their help
    QHash<QString, QHash<QString, QStringList>> m_offers;   // by shell and line
    QTemporaryDir m_folder;
};

void TestManual::initTestCase()
{
    QFile song(m_folder.filePath(u"song.lrc"_s));
    QVERIFY(song.open(QIODevice::WriteOnly) && QDir(m_folder.path()).mkdir(u"folder"_s));
    QStringList lines;
    for (const QString &program : m_programs) {
        const QString text = help(program);
        QVERIFY2(!text.isEmpty(), qPrintable(program));
        m_commands[program][{}] = optionsInHelp(text);
        lines += program + u" -"_s;
        const QStringList commands = captured(text.section(u"Subcommands:"_s, 1), u"^  (\\w+)"_s);
        for (const QString &command : commands) {
            m_commands[program][command] = optionsInHelp(help(program, command));
            lines += program + u' ' + command + u" -"_s;
        }
    }
    for (const Line &line : m_lines)
        lines += QString::fromLatin1(line.typed);
    m_offers[u"bash"_s] = ::offers(u"bash"_s, u"bash-completion/completions"_s, lines, m_folder.path());
    m_offers[u"zsh"_s] = ::offers(u"zsh"_s, u"zsh/vendor-completions"_s, lines, m_folder.path());
}

void TestManual::tellsWhatHelpTells_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("command");
    for (const QString &program : m_programs) {
        const QStringList commands = m_commands[program].keys();
        for (const QString &command : commands)
            QTest::addRow("%s %s", qPrintable(program), qPrintable(command)) << program << command;
    }
}

void TestManual::tellsWhatHelpTells()
{
    QFETCH(const QString, program);
    QFETCH(const QString, command);
    const QStringList options = m_commands[program][command];
    QVERIFY(options.contains(u"--help"_s));
    QCOMPARE(optionsInPage(program, command), options);
    const QString line = QStringList{program, command, u"-"_s}.join(u' ').replace(u"  "_s, u" "_s);
    for (const auto &shell : {u"bash"_s, u"zsh"_s}) {
        if (!m_offers[shell].isEmpty())
            QCOMPARE(m_offers[shell][line], options);
    }
}

void TestManual::offers_data()
{
    QTest::addColumn<QString>("shell");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("offered");
    for (const auto &shell : {u"bash"_s, u"zsh"_s}) {
        for (const Line &line : m_lines) {
            const QString typed = QString::fromLatin1(line.typed);
            if (m_programs.contains(typed.section(u' ', 0, 0)))
                QTest::addRow("%s: %s", qPrintable(shell), line.typed) << shell << typed << line.offered;
        }
    }
}

void TestManual::offers()
{
    QFETCH(const QString, shell);
    QFETCH(const QString, line);
    QFETCH(const QStringList, offered);
    if (m_offers[shell].isEmpty())
        QSKIP("the shell is not installed");
    QVERIFY(m_offers[shell].contains(line));
    QCOMPARE(m_offers[shell][line], offered);
}

QTEST_GUILESS_MAIN(TestManual)
#include "tst_manual.moc"
