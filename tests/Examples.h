// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

/// Adds rows to the running test, in one column named "cells": those of the tables with this header in
/// docs/lrc-format.md, which has `tables` of them. A cell is its code spans, one a line, in which symbols stand for
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
        row.replace(u'␣', u' ').replace(u'␍', u'\r').replace(u'␊', u'\n').replace(u"`, `"_s, u"\n"_s);
        row.replace(u"\\uFEFF"_s, u"\uFEFF"_s).replace(u"\\u2028"_s, u"\u2028"_s);
        QTest::newRow(qPrintable(line)) << row.split(u"` | `"_s);
    }
    QCOMPARE(tables, 0);
}

inline constexpr qint64 Max = std::numeric_limits<qint64>::max();
inline constexpr qint64 Min = std::numeric_limits<qint64>::min();
