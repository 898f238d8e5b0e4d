// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Programs contain these sizes from when they were compiled. A change needs a new SOVERSION.

#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVSongLrc.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

static_assert(sizeof(QVTextRange) == 16);
static_assert(sizeof(QVTimeList) == 48);
static_assert(sizeof(QVSongLine) == 64);
static_assert(sizeof(QVEditSong) == 16);
static_assert(sizeof(QVPreviewSong) == 16);
static_assert(sizeof(QVLyricError) == 64);
static_assert(sizeof(QVLyricDataTask) == 8);
static_assert(sizeof(QVLyricHttpClient) == 8);
static_assert(sizeof(EncryptionTools) == 8);
static_assert(sizeof(ZTLyricRequestModel) == 32);
