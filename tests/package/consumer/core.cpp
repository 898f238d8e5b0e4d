// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLrc.h>

#include <stdexcept>

int main()
{
    // Plain literals convert to QString: the library's own strict Qt macros don't apply to its users.
    QVEditSong song;
    song.buildWithLrcText("[00:01.00]words\n");
    song.aryLines()->front()->shiftAllTime(500);
    song.updateSongText();
    QVPreviewSong preview;
    preview.buildWithLrcText(song.songText());
    try {
        QVUtils::getTimeInterval("[");
    } catch (const std::out_of_range &) { // thrown in the library, caught here
        const bool isRight = preview.previewSongTextWithHasTag(true) == "[00:01.50]words\n";
        return isRight && QVSongLrcVersionNumber >= 1 ? 0 : 1;
    }
    return 1;
}
