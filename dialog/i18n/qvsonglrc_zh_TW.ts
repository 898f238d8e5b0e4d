<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>正在搜尋…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>正在下載…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>找到 %@ 個結果</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>沒有找到歌詞</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>搜尋歌詞</translation>
    </message>
    <message>
        <source>&amp;Title:</source>
        <translation>歌名(&amp;T)：</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>歌名</translation>
    </message>
    <message>
        <source>The title of the song to search for</source>
        <translation>要搜尋的歌名</translation>
    </message>
    <message>
        <source>&amp;Artist:</source>
        <translation>歌手(&amp;A)：</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>歌手</translation>
    </message>
    <message>
        <source>The artist to search for</source>
        <translation>要搜尋的歌手</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>搜尋(&amp;S)</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>在歌詞服務中搜尋歌名和歌手</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>搜尋結果</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>找到的歌詞及其歌名和歌手；按 Enter 鍵下載選取的歌詞</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>忙碌</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>搜尋或下載進行時會移動</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>搜尋的狀態</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>請輸入歌名或歌手</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>下載(&amp;D)</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>下載選取的歌詞並關閉視窗</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>關閉視窗</translation>
    </message>
</context>
</TS>
