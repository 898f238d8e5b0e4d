// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricHttpClient.h>

QVLyricDataTask::~QVLyricDataTask() = default;
QVLyricHttpClient::~QVLyricHttpClient() = default;
