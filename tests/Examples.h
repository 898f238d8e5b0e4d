// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

#include <QFile>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

/// The lines in the notation of docs/lrc-format.md.
inline QString linesOf(const QVSongLineList &lines)
{
    QStringList result;
    for (const auto &line : lines) {
        QStringList times;
        for (const qint64 time : *line->aryTimes())
            times += QString::number(time);
        const QString kind = line->isProperty() ? u"property "_s + line->propertyStr()
            : times.isEmpty()                   ? u"plain"_s
                                                : u"time "_s + times.join(u", ");
        result += kind + (line->lineText().isEmpty() ? u":"_s : u": "_s + line->lineText());
    }
    return result.join(u'\n');
}

/// \p text with the characters that its symbols stand for.
inline QString withoutSymbols(QString text)
{
    text.replace(u'␣', u' ').replace(u'␉', u'\t').replace(u'␍', u'\r').replace(u'␊', u'\n');
    for (qsizetype at = 0; (at = text.indexOf(u"\\u"_s, at)) >= 0; ++at)
        text.replace(at, 6, QChar(text.sliced(at + 2, 4).toUShort(nullptr, 16)));
    return text;
}

/// Adds rows to the running test, in one column named "cells": those of the tables with this header in the page PAGE of
/// the documentation, which has `tables` of them. A cell is its code spans, one a line, in which symbols stand for
/// characters.
inline void addExamples(const QString &header, int tables = 1)
{
    QFile page(QStringLiteral(PAGE));
    QVERIFY(page.open(QIODevice::ReadOnly));
    QTest::addColumn<QStringList>("cells");
    QString table;
    for (const QString &line : QString::fromUtf8(page.readAll()).split(u'\n')) {
        tables -= line == header;
        const bool isRow = line.startsWith(u"| `"_s);
        if (!isRow && !line.startsWith(u"|--"_s))
            table = line;
        if (!isRow || table != header)
            continue;
        QString row = line.sliced(3).chopped(3).replace(u"www.quendle.example"_s, QStringLiteral(MAKER_HOST));
        row = withoutSymbols(row).replace(u"`, `"_s, u"\n"_s);
        QTest::newRow(qPrintable(line)) << row.split(u"` | `"_s);
    }
    QCOMPARE(tables, 0);
}

inline constexpr qint64 Max = std::numeric_limits<qint64>::max();
inline constexpr qint64 Min = std::numeric_limits<qint64>::min();
