// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <stdexcept>

/// Why the service can't start or go on, in one line for its user.
class ServiceError : public std::runtime_error
{
public:
    explicit ServiceError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};
