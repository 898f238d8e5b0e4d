// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace QVSongLrcPrivate {

inline constexpr qsizetype HugePageSize = 2 * 1024 * 1024;

/// Asks the kernel for huge pages for memory that is about to be written: the first touch of each small page takes
/// longer than reading the lyric that goes there. Does nothing for small memory or where there are no huge pages.
template <typename T>
void preferHugePages([[maybe_unused]] T *begin, [[maybe_unused]] qsizetype count)
{
#ifdef MADV_HUGEPAGE
    const quintptr first = (quintptr(begin) + HugePageSize - 1) / HugePageSize * HugePageSize;
    const quintptr end = quintptr(begin + count) / HugePageSize * HugePageSize;
    if (end > first)
        madvise(reinterpret_cast<void *>(first), end - first, MADV_HUGEPAGE); // a hint: failing does no harm
#endif
}

} // namespace QVSongLrcPrivate
