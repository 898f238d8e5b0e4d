// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <stdexcept>

/// Why the service can't run, in one line for its user.
class StartupError : public std::runtime_error
{
public:
    explicit StartupError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};
