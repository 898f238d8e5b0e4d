// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

// All public headers: those of QVSongLrc::Core, and those of QVSongLrc::Lookup and QVSongLrc::Dialog where
// these are installed. Every header needs no more than Qt Core to compile, so a program that includes this
// one links only the libraries that it uses.

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVLyricImport.h>
#include <QVSongLrc/QVLyricRemark.h>
#include <QVSongLrc/QVPreviewSong.h>
#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/QVSongLrcVersion.h>
#include <QVSongLrc/QVTextRange.h>
#include <QVSongLrc/QVUtils.h>
#include <QVSongLrc/QVWordTimes.h>

#if __has_include(<QVSongLrc/QVLyricService.h>)
#include <QVSongLrc/Distance.h>
#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVLyricDataTask.h>
#include <QVSongLrc/QVLyricError.h>
#include <QVSongLrc/QVLyricHttpClient.h>
#include <QVSongLrc/QVLyricService.h>
#include <QVSongLrc/ZTLyricRequestModel.h>
#endif

#if __has_include(<QVSongLrc/QVLyricSearchWndCtl.h>)
#include <QVSongLrc/QVLyricSearchWndCtl.h>
#endif
