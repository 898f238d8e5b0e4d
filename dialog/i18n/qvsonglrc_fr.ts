<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Localized</name>
    <message>
        <source>Searching...</source>
        <translation>Recherche en cours…</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation>Téléchargement en cours…</translation>
    </message>
    <message>
        <source>Found %@ results</source>
        <translation>%@ résultats trouvés</translation>
    </message>
    <message>
        <source>Found no lyric</source>
        <translation>Aucune parole trouvée</translation>
    </message>
</context>
<context>
    <name>QVLyricSearchWndCtl</name>
    <message>
        <source>Search for Lyrics</source>
        <translation>Rechercher des paroles</translation>
    </message>
    <message>
        <source>&amp;Title:</source>
        <translation>&amp;Titre :</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titre</translation>
    </message>
    <message>
        <source>The title of the song to search for</source>
        <translation>Le titre de la chanson à rechercher</translation>
    </message>
    <message>
        <source>&amp;Artist:</source>
        <translation>&amp;Artiste :</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Artiste</translation>
    </message>
    <message>
        <source>The artist to search for</source>
        <translation>L’artiste à rechercher</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Rechercher</translation>
    </message>
    <message>
        <source>Searches the lyric service for the title and the artist</source>
        <translation>Recherche le titre et l’artiste auprès du service de paroles</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Résultats</translation>
    </message>
    <message>
        <source>The lyrics found, with title and artist; Enter downloads the selected one</source>
        <translation>Les paroles trouvées, avec titre et artiste ; Entrée télécharge celles qui sont sélectionnées</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Occupé</translation>
    </message>
    <message>
        <source>Moves while a search or a download is under way</source>
        <translation>S’anime pendant une recherche ou un téléchargement</translation>
    </message>
    <message>
        <source>The state of the search</source>
        <translation>L’état de la recherche</translation>
    </message>
    <message>
        <source>Enter a title or an artist</source>
        <translation>Saisissez un titre ou un artiste</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>Té&amp;lécharger</translation>
    </message>
    <message>
        <source>Downloads the selected lyric and closes the window</source>
        <translation>Télécharge les paroles sélectionnées et ferme la fenêtre</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;nnuler</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Ferme la fenêtre</translation>
    </message>
</context>
</TS>
