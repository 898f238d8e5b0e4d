// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

// Test data from tests/data. A file is a JSON object of tables, a table is an array of rows, and a row is an
// array that begins with the row's name.

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// Adds the rows of a table to the running test, in one column named "row".
inline void addCases(const char *file, const char *table)
{
    QFile data(QStringLiteral(CASES "/%1.json").arg(QLatin1StringView(file)));
    QVERIFY(data.open(QIODevice::ReadOnly));
    QJsonParseError error;
    const QByteArray tables = data.readAll().replace("www.quendle.example", MAKER_HOST);
    const auto document = QJsonDocument::fromJson(tables, &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    const QJsonArray rows = document[QLatin1StringView(table)].toArray();
    QVERIFY2(!rows.isEmpty(), table);
    QTest::addColumn<QJsonArray>("row");
    for (const QJsonValue &row : rows)
        QTest::newRow(qPrintable(row[0].toString())) << row.toArray();
}

inline QStringList strings(const QJsonValue &array)
{
    return array.toVariant().toStringList();
}
