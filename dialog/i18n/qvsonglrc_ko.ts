<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>검색 중…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>다운로드 중…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>결과 %@개를 찾았습니다</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>가사를 찾지 못했습니다</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>가사 검색</translation>
    </message>
    <message>
        <source>&amp;Title:</source>
        <translation>제목(&amp;T):</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>제목</translation>
    </message>
    <message>
        <source>The title of the song to search for</source>
        <translation>검색할 노래 제목</translation>
    </message>
    <message>
        <source>&amp;Artist:</source>
        <translation>아티스트(&amp;A):</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>아티스트</translation>
    </message>
    <message>
        <source>The artist to search for</source>
        <translation>검색할 아티스트</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>검색(&amp;S)</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>제목과 아티스트로 가사 서비스를 검색합니다</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>검색 결과</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>찾은 가사의 제목과 아티스트. Enter 키를 누르면 선택한 가사를 다운로드합니다</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>작업 중</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>검색하거나 다운로드하는 동안 움직입니다</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>검색 상태</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>제목이나 아티스트를 입력하세요</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>다운로드(&amp;D)</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>선택한 가사를 다운로드하고 창을 닫습니다</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>취소(&amp;C)</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>창을 닫습니다</translation>
    </message>
</context>
</TS>
