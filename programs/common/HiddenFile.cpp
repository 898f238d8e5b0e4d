// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "HiddenFile.h"

#include "FileError.h"

#include <QCryptographicHash>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

std::string folderOf(const std::string &file)
{
    const auto folder = std::filesystem::path(file).parent_path();
    return folder.empty() ? "." : folder.string();
}

std::string hiddenName(std::string name)
{
    constexpr std::string_view Prefix("."), Suffix(".songlrc-new");
    if (name.size() > NAME_MAX - Prefix.size() - Suffix.size())
        name =
            QCryptographicHash::hash(QByteArrayView(name), QCryptographicHash::Sha256).toHex().toStdString();
    return std::string(Prefix).append(name).append(Suffix);
}

} // namespace

HiddenFile::HiddenFile(const std::string &target, const std::string &shownName, mode_t mode)
    : m_shownName(shownName)
    , m_folder(open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    , m_targetName(std::filesystem::path(target).filename())
    , m_name(hiddenName(m_targetName))
{
    if (!m_folder.isValid())
        throw FileError(shownName, systemError(errno));
    while (!create(mode))
        removeLeftOver();
}

HiddenFile::~HiddenFile()
{
    if (m_file)
        unlinkat(m_folder.get(), m_name.c_str(), 0);
}

// False when the name is taken.
bool HiddenFile::create(mode_t mode)
{
    auto file = std::make_unique<FileDescriptor>(
        openat(m_folder.get(), m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file->isValid()) {
        if (errno == EEXIST)
            return false;
        throw FileRefused(m_shownName, "no file can be made beside it: " + systemError(errno));
    }
    // Another program may see the file before it is locked, and remove it as one that was left over.
    flock(file->get(), LOCK_EX);
    if (!hasName(file->get()))
        return false;
    m_file = std::move(file);
    return true;
}

void HiddenFile::removeLeftOver()
{
    const FileDescriptor leftOver(
        openat(m_folder.get(), m_name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!leftOver.isValid() && errno == ENOENT)
        return;
    struct stat status = {};
    if (!leftOver.isValid() || fstat(leftOver.get(), &status) != 0 || !S_ISREG(status.st_mode))
        throw FileRefused(m_shownName, m_name + " is in the way");
    if (flock(leftOver.get(), LOCK_EX | LOCK_NB) != 0) {
        throw FileRefused(m_shownName,
                          errno == EWOULDBLOCK ? "another program is writing it"
                                               : m_name + " is in the way: " + systemError(errno));
    }
    // The program that held the lock may have renamed the file.
    if (hasName(leftOver.get()) && unlinkat(m_folder.get(), m_name.c_str(), 0) != 0)
        throw FileRefused(m_shownName, m_name + " is in the way: " + systemError(errno));
}

bool HiddenFile::hasName(int descriptor) const
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(descriptor, &opened) == 0
        && fstatat(m_folder.get(), m_name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0
        && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

int HiddenFile::takePlace()
{
    if (renameat(m_folder.get(), m_name.c_str(), m_folder.get(), m_targetName.c_str()) != 0)
        return errno;
    m_file.reset();
    fsync(m_folder.get()); // Not every file system can; the file is whole in any case.
    return 0;
}
