// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/EncryptionTools.h>

#include "AesEncryptionTools.h"

#include <utility>

using namespace QVSongLrcPrivate;

EncryptionTools::~EncryptionTools() = default;

namespace {
std::shared_ptr<EncryptionTools> &inUse()
{
    static std::shared_ptr<EncryptionTools> tools = std::make_shared<AesEncryptionTools>();
    return tools;
}
} // namespace

std::shared_ptr<EncryptionTools> EncryptionTools::sharedEncryptionTools()
{
    return inUse();
}

void EncryptionTools::setSharedEncryptionTools(std::shared_ptr<EncryptionTools> tools)
{
    inUse() = tools ? std::move(tools) : std::make_shared<AesEncryptionTools>();
}
