<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>検索中…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>ダウンロード中…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>%@ 件見つかりました</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>歌詞が見つかりませんでした</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>歌詞の検索</translation>
    </message>
    <message>
        <source>&amp;Title:</source>
        <translation>曲名(&amp;T):</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>曲名</translation>
    </message>
    <message>
        <source>The title of the song to search for</source>
        <translation>検索する曲名</translation>
    </message>
    <message>
        <source>&amp;Artist:</source>
        <translation>アーティスト(&amp;A):</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>アーティスト</translation>
    </message>
    <message>
        <source>The artist to search for</source>
        <translation>検索するアーティスト</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>検索(&amp;S)</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>曲名とアーティストで歌詞サービスを検索します</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>検索結果</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>見つかった歌詞の曲名とアーティスト。Enter キーで選択した歌詞をダウンロードします</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>処理中</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>検索またはダウンロードの間、動きます</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>検索の状態</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>曲名またはアーティストを入力してください</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>ダウンロード(&amp;D)</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>選択した歌詞をダウンロードしてウインドウを閉じます</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>キャンセル(&amp;C)</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>ウインドウを閉じます</translation>
    </message>
</context>
</TS>
