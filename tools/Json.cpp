// SPDX-License-Identifier: MIT
#include "Json.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Json {
namespace {

QJsonValue stringOrNull(const QString &string)
{
    return string.isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(string);
}

} // namespace

QByteArray value(const QJsonValue &value)
{
    // QJsonDocument writes arrays and objects only, so the value goes into an array, and out of it again.
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
    QJsonArray times;
    for (const qint64 time : *line.aryTimes())
        times.append(time);
    const auto [location, length] = line.txtRg();
    return object({{"isProperty", value(line.isProperty())},
                   {"propertyStr", value(stringOrNull(line.propertyStr()))},
                   {"aryTimes", value(times)},
                   {"lineText", value(stringOrNull(line.lineText()))},
                   {"txtRg", value(QJsonArray{qint64(location), qint64(length)})},
                   {"playTime", value(line.playTime())},
                   {"displayText", value(line.displayText())}});
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
