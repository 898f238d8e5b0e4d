// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonValue>

#include <QVSongLrc/QVSongLine.h>

#include <initializer_list>
#include <utility>

/// Writes JSON text directly: unlike QJsonObject this keeps the order of members, and a long lyric needs no tree in
/// memory. Lone surrogates are escaped, so every QString can be read back unchanged.
namespace Json {

QByteArray value(const QJsonValue &value);

QByteArray object(std::initializer_list<std::pair<const char *, QByteArray>> members);

QByteArray line(const QVSongLine &line);
QByteArray lines(const QVSongLineList &lines);

} // namespace Json
