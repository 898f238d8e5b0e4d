// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLrc.h>

#include <stdexcept>

int main()
{
    // Plain literals convert to QString: the library's own strict Qt macros don't apply to its users.
    QVEditSong song;
    song.buildWithLrcText("[00:01.00]words");
    try {
        song.deleteLineAtIndexs({1});
    } catch (const std::out_of_range &) { // thrown in the library, caught here
        return song.songText() == "[00:01.00]words\n" && QVSongLrcVersionNumber >= 1 ? 0 : 1;
    }
    return 1;
}
