// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVPreviewSong.h>
#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/QVSongLrcVersion.h>
#include <QVSongLrc/QVTextRange.h>
#include <QVSongLrc/QVUtils.h>
