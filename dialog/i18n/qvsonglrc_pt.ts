<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>Pesquisando…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>Baixando…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>%@ resultados encontrados</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>Nenhuma letra encontrada</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>Pesquisar letras</translation>
    </message>
    <message>
        <source>&amp;Title:</source>
        <translation>&amp;Título:</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Título</translation>
    </message>
    <message>
        <source>The title of the song to search for</source>
        <translation>O título da música a pesquisar</translation>
    </message>
    <message>
        <source>&amp;Artist:</source>
        <translation>&amp;Artista:</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Artista</translation>
    </message>
    <message>
        <source>The artist to search for</source>
        <translation>O artista a pesquisar</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Pesquisar</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>Pesquisa o título e o artista no serviço de letras</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Resultados</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>As letras encontradas, com título e artista; Enter baixa a selecionada</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Ocupado</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>Move-se durante uma pesquisa ou um download</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>O estado da pesquisa</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>Digite um título ou um artista</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Baixar</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>Baixa a letra selecionada e fecha a janela</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Fecha a janela</translation>
    </message>
</context>
</TS>
