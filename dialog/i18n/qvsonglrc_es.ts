<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>Buscando…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>Descargando…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>%@ resultados encontrados</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>No se encontró ninguna letra</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>Buscar letras</translation>
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
        <translation>El título de la canción que se busca</translation>
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
        <translation>El artista que se busca</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Buscar</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>Busca el título y el artista en el servicio de letras</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Resultados</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>Las letras encontradas, con título y artista; Intro descarga la seleccionada</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Ocupado</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>Se mueve durante una búsqueda o una descarga</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>El estado de la búsqueda</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>Escriba un título o un artista</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Descargar</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>Descarga la letra seleccionada y cierra la ventana</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Cierra la ventana</translation>
    </message>
</context>
</TS>
