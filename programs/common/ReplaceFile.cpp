// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ReplaceFile.h"

#include "FileDescriptor.h"
#include "HiddenFile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

using Attributes = std::map<std::string, std::string>;

constexpr const char *AccessList = "system.posix_acl_access";

// Where the symbolic links end, even if no file is there yet.
std::string linkTarget(std::filesystem::path path)
{
    constexpr int MaxLinks = 40; // as in the kernel
    std::error_code error;
    for (int i = 0; i < MaxLinks && std::filesystem::is_symlink(path, error); ++i)
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    return path;
}

// What read(buffer, size) puts into its buffer. It returns a size, or -1; the error \p absent means nothing is there.
// \throws FileRefused
template <typename Read>
std::string readAttribute(const std::string &file, int absent, Read read)
{
    constexpr size_t MaxSize = 64 * 1024; // of a list and of a value, in the kernel
    std::string buffer(MaxSize, '\0');
    const ssize_t size = read(buffer.data(), buffer.size());
    if (size < 0 && errno != absent)
        throw FileRefused(file, "its attributes can't be read: " + systemError(errno));
    buffer.resize(size_t(std::max<ssize_t>(size, 0)));
    return buffer;
}

// The extended attributes, the access control list among them.
Attributes attributesOf(const std::string &file, const std::string &path)
{
    const std::string names = readAttribute(
        file, ENOTSUP, [&](char *buffer, size_t size) { return listxattr(path.c_str(), buffer, size); });
    Attributes attributes;
    for (size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
        const char *const name = names.data() + begin;
        attributes[name] = readAttribute(file, ENODATA, [&](char *buffer, size_t size) {
            return getxattr(path.c_str(), name, buffer, size);
        });
    }
    return attributes;
}

// Gives the new file what the old one has. Tries everything first and then compares.
void keep(int descriptor, const std::string &file, const struct stat &old, const Attributes &attributes)
{
    (void)!fchown(descriptor, old.st_uid, old.st_gid);
    if (!attributes.contains(AccessList))
        fremovexattr(descriptor, AccessList); // which the folder may have given it
    for (const auto &[name, value] : attributes)
        fsetxattr(descriptor, name.c_str(), value.data(), value.size(), 0);
    fchmod(descriptor, old.st_mode & ALLPERMS);

    struct stat now = {};
    fstat(descriptor, &now);
    if (now.st_uid != old.st_uid || now.st_gid != old.st_gid)
        throw FileRefused(file, "its owner or group can't be kept");
    if (now.st_mode != old.st_mode)
        throw FileRefused(file, "its mode can't be kept");
    const Attributes kept = attributesOf(file, "/proc/self/fd/" + std::to_string(descriptor));
    for (const auto &[name, value] : attributes) {
        if (const auto found = kept.find(name); found == kept.end() || found->second != value)
            throw FileRefused(file, "its attribute " + name + " can't be kept");
    }
}

void refuseWhatCannotBeReplaced(const std::string &file, const std::string &target, const struct stat &old)
{
    if (old.st_nlink > 1)
        throw FileRefused(file, "it has several hard links, which would come apart");
    constexpr mode_t AnyWrite = S_IWUSR | S_IWGRP | S_IWOTH; // root may write to every file
    if ((old.st_mode & AnyWrite) == 0 || faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        throw FileRefused(file, "it is not writable");
    const FileDescriptor opened(open(target.c_str(), O_RDONLY | O_CLOEXEC));
    unsigned flags = 0;
    if (opened.isValid() && ioctl(opened.get(), FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_APPEND_FL) != 0)
        throw FileRefused(file, "it can only be appended to");
}

// Tries on a file without a name, which does not change the folder, whether what the old file has can be kept.
void tryToKeep(const std::string &file, const std::string &target, const struct stat &old)
{
    const auto parent = std::filesystem::path(target).parent_path();
    const std::string folder = parent.empty() ? "." : parent.string();
    const FileDescriptor nameless(open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (nameless.isValid())
        keep(nameless.get(), file, old, attributesOf(file, target));
    else if (errno != EOPNOTSUPP && errno != EISDIR) // not every file system can
        throw FileRefused(file, "no file can be made beside it: " + systemError(errno));
}

bool hasContent(const std::string &file, const struct stat &status, const QByteArray &bytes)
{
    if (status.st_size != bytes.size())
        return false;
    const FileDescriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return opened.isValid() && readAll(opened.get(), file) == bytes;
}

void writeDirectly(const std::string &file, const QByteArray &bytes)
{
    const FileDescriptor opened(open(file.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    if (const int error = opened.isValid() ? writeAll(opened.get(), bytes) : errno)
        throw FileError(file, systemError(error));
}

} // namespace

bool replaceFile(const std::string &file, const QByteArray &bytes, Writing writing)
{
    struct stat old = {};
    const bool exists = stat(file.c_str(), &old) == 0;
    if (!exists && errno != ENOENT)
        throw FileError(file, systemError(errno));
    if (exists && S_ISDIR(old.st_mode))
        throw FileError(file, systemError(EISDIR));
    const std::string target = linkTarget(file);
    if (exists && S_ISREG(old.st_mode)) {
        if (hasContent(target, old, bytes))
            return false;
        refuseWhatCannotBeReplaced(file, target, old);
    }
    if (writing == Writing::DryRun) {
        if (exists && S_ISREG(old.st_mode))
            tryToKeep(file, target, old);
        return true;
    }
    if (exists && !S_ISREG(old.st_mode)) {
        writeDirectly(file, bytes);
        return true;
    }

    HiddenFile written(target, file, exists ? S_IRUSR | S_IWUSR : 0666);
    int error = writeAll(written.descriptor(), bytes);
    if (error == 0 && exists) // after writing, which would clear some mode bits
        keep(written.descriptor(), file, old, attributesOf(file, target));
    if (error == 0 && fsync(written.descriptor()) != 0)
        error = errno;
    if (error == 0)
        error = written.takePlace();
    if (error != 0)
        throw FileError(file, systemError(error));
    return true;
}
