// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

// Tables of cases in tests/data: a JSON object whose members are tables, each an array of rows, each row an
// array that begins with a name.

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// Adds the rows of a table to the test that runs now, as one column "row".
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
