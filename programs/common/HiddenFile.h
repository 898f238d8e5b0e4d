// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"

#include <memory>
#include <string>

#include <sys/types.h>

/// A new, empty file in the folder of another one, ".NAME.songlrc-new", that is to take its place. It is locked with
/// flock() as long as this object lives: a file of that name without a lock was left by a program that was killed,
/// and is removed. The destructor removes the file unless takePlace() was called.
class HiddenFile
{
public:
    /// \p shownName is for messages. \throws FileRefused when another program holds the file, or it can't be made
    HiddenFile(const std::string &target, const std::string &shownName, mode_t mode);
    HiddenFile(const HiddenFile &) = delete;
    HiddenFile &operator=(const HiddenFile &) = delete;
    ~HiddenFile();

    int descriptor() const { return m_file->get(); }

    /// Renames the file to the name of the other one and flushes the folder. Returns 0, or the error number.
    int takePlace();

private:
    bool create(mode_t mode);
    void removeLeftOver();
    bool hasName(int descriptor) const;

    const std::string m_shownName;
    const FileDescriptor m_folder;
    const std::string m_targetName;
    const std::string m_name;
    std::unique_ptr<FileDescriptor> m_file;
};
