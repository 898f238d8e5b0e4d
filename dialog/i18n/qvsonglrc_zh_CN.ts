<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>正在搜索…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>正在下载…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>找到 %@ 个结果</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>没有找到歌词</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>搜索歌词</translation>
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
        <translation>要搜索的歌名</translation>
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
        <translation>要搜索的歌手</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>搜索(&amp;S)</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>在歌词服务中搜索歌名和歌手</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>搜索结果</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>找到的歌词及其歌名和歌手；按回车键下载选中的歌词</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>忙碌</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>搜索或下载进行时会移动</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>搜索的状态</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>请输入歌名或歌手</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>下载(&amp;D)</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>下载选中的歌词并关闭窗口</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>关闭窗口</translation>
    </message>
</context>
</TS>
