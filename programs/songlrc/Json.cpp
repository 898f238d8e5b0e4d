// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <array>

namespace Json {
namespace {

QByteArray string(const QString &text)
{
    if (text.isNull())
        return "null";
    const bool isPlain = std::none_of(text.cbegin(), text.cend(), [](QChar c) {
        return c < u' ' || c == u'"' || c == u'\\' || c.isSurrogate();
    });
    return isPlain ? '"' + text.toUtf8() + '"' : value(text);
}

QByteArray boolean(bool value)
{
    return value ? "true" : "false";
}

template <typename Numbers>
QByteArray numbers(const Numbers &list)
{
    QByteArray text = "[";
    for (const qint64 number : list)
        text += (text.size() > 1 ? "," : "") + QByteArray::number(number);
    return text + ']';
}

} // namespace

QByteArray value(const QJsonValue &value)
{
    // QJsonDocument writes only arrays and objects, so wrap the value in an array and remove the brackets.
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.sliced(1, array.size() - 2);
}

QByteArray object(std::initializer_list<std::pair<const char *, QByteArray>> members)
{
    QByteArray text;
    for (const auto &[key, value] : members) {
        text += text.isEmpty() ? "{\"" : ",\"";
        text += key;
        text += "\":";
        text += value;
    }
    return text + '}';
}

QByteArray line(const QVSongLine &line)
{
    const auto [location, length] = line.txtRg();
    return object({{"isProperty", boolean(line.isProperty())},
                   {"propertyStr", string(line.propertyStr())},
                   {"aryTimes", numbers(*line.aryTimes())},
                   {"lineText", string(line.lineText())},
                   {"txtRg", numbers(std::array{qint64(location), qint64(length)})},
                   {"playTime", QByteArray::number(line.playTime(), 'g', QLocale::FloatingPointShortest)},
                   {"displayText", string(line.displayText())}});
}

QByteArray lines(const QVSongLineList &lines)
{
    QByteArray text = "[";
    for (const auto &each : lines) {
        if (text.size() > 1)
            text += ',';
        text += line(*each);
    }
    return text + ']';
}

} // namespace Json
