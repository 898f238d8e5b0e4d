// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonValue>

#include <QVSongLrc/QVSongLine.h>

#include <initializer_list>
#include <utility>

/// JSON text, built piece by piece so that members keep their order and a long lyric needs no tree in memory.
/// Lone surrogates are escaped, so that every text arrives to the code unit.
namespace Json {

QByteArray value(const QJsonValue &value);

QByteArray object(std::initializer_list<std::pair<const char *, QByteArray>> members);

QByteArray line(const QVSongLine &line);
QByteArray lines(const QVSongLineList &lines);

} // namespace Json
