// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLrc.h>

#include <stdexcept>

int main()
{
    // Plain literals make strings here: the library's own strict macros do not reach its users.
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
