// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

/// The fields of a URL-encoded form. Nothing when \p body is malformed: a percent sign without two hexadecimal
/// digits, text that is not UTF-8, or a repeated field.
std::optional<QHash<QString, QString>> readForm(const QByteArray &body);
