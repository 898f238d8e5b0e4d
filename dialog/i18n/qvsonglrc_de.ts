<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>Wird heruntergeladen …</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>%@ Ergebnisse gefunden</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>Kein Liedtext gefunden</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>Liedtext suchen</translation>
    </message>
    <message>
        <source>&amp;Title:</source>
        <translation>&amp;Titel:</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>The title of the song to search for</source>
        <translation>Der Titel des gesuchten Liedes</translation>
    </message>
    <message>
        <source>&amp;Artist:</source>
        <translation>&amp;Interpret:</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>The artist to search for</source>
        <translation>Der gesuchte Interpret</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>Sucht beim Liedtextdienst nach Titel und Interpret</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>Die gefundenen Liedtexte mit Titel und Interpret; die Eingabetaste lädt den ausgewählten herunter</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Beschäftigt</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>Bewegt sich, solange eine Suche oder ein Download läuft</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>Der Stand der Suche</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>Titel oder Interpret eingeben</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>Lädt den ausgewählten Liedtext herunter und schließt das Fenster</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Schließt das Fenster</translation>
    </message>
</context>
</TS>
