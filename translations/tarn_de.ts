<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>QMenu</name>
    <message>
        <source>Some of the selected items have it.</source>
        <translation>Einige der ausgewählten Objekte haben ihn.</translation>
    </message>
    <message>
        <source>New Tag…</source>
        <translation>Neuer Tag …</translation>
    </message>
    <message>
        <source>Remove All Tags</source>
        <translation>Alle Tags entfernen</translation>
    </message>
</context>
<context>
    <name>tarn::ActivityRow</name>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Stopping…</source>
        <translation>Wird gestoppt …</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Waiting…</source>
        <translation>Wartet …</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
</context>
<context>
    <name>tarn::AdvancedSection</name>
    <message>
        <source>Reset Settings…</source>
        <translation>Einstellungen zurücksetzen …</translation>
    </message>
    <message>
        <source>Settings and lists are kept in %1.</source>
        <translation>Einstellungen und Listen liegen in %1.</translation>
    </message>
    <message>
        <source>“tarn settings” shows and changes them in a terminal; windows follow at once.</source>
        <translation>„tarn settings“ zeigt und ändert sie im Terminal; die Fenster folgen sofort.</translation>
    </message>
    <message>
        <source>Show Folder</source>
        <translation>Ordner zeigen</translation>
    </message>
    <message>
        <source>Reset All Settings?</source>
        <translation>Alle Einstellungen zurücksetzen?</translation>
    </message>
    <message>
        <source>Shortcuts too. Favourites, smart folders and workspaces stay as they are.</source>
        <translation>Auch die Tastenkürzel. Favoriten, intelligente Ordner und Arbeitsbereiche bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>tarn::AppModel</name>
    <message>
        <source>Emptying the Trash</source>
        <translation>Papierkorb wird geleert</translation>
    </message>
    <message>
        <source>%1 deleted</source>
        <translation>%1 gelöscht</translation>
    </message>
</context>
<context>
    <name>tarn::ArchivePreview</name>
    <message>
        <source>Members of the archive</source>
        <translation>Inhalt des Archivs</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>%1, %2 unpacked</source>
        <translation>%1, entpackt %2</translation>
    </message>
</context>
<context>
    <name>tarn::BrowserToolbar</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Search Home</source>
        <translation>Benutzerordner durchsuchen</translation>
    </message>
    <message>
        <source>Search %1</source>
        <translation>„%1“ durchsuchen</translation>
    </message>
</context>
<context>
    <name>tarn::BrowserWindow</name>
    <message>
        <source>New Window</source>
        <translation>Neues Fenster</translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation>Tab schließen</translation>
    </message>
    <message>
        <source>Show Tab %1</source>
        <translation>Tab %1 zeigen</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Show Sidebar</source>
        <translation>Seitenleiste einblenden</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Hide Sidebar</source>
        <translation>Seitenleiste ausblenden</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu den Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Go to Start</source>
        <translation>Zur Startseite</translation>
    </message>
    <message>
        <source>Go to Trash</source>
        <translation>Zum Papierkorb</translation>
    </message>
    <message>
        <source>Empty Trash…</source>
        <translation>Papierkorb leeren …</translation>
    </message>
    <message>
        <source>Next Part</source>
        <translation>Nächster Bereich</translation>
    </message>
    <message>
        <source>Previous Part</source>
        <translation>Voriger Bereich</translation>
    </message>
    <message>
        <source>Menu of What Is Selected</source>
        <translation>Menü der Auswahl</translation>
    </message>
    <message>
        <source>Permissions…</source>
        <translation>Rechte …</translation>
    </message>
</context>
<context>
    <name>tarn::BusyLine</name>
    <message>
        <source>Searching</source>
        <translation>Suche läuft</translation>
    </message>
</context>
<context>
    <name>tarn::Chip</name>
    <message>
        <source>Search filter</source>
        <translation>Suchfilter</translation>
    </message>
    <message>
        <source>Search filter. Press Delete to remove it.</source>
        <translation>Suchfilter. Mit der Entf-Taste entfernen.</translation>
    </message>
    <message>
        <source>Remove “%1”</source>
        <translation>„%1“ entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>tarn::ChipRow</name>
    <message>
        <source>Search filters</source>
        <translation>Suchfilter</translation>
    </message>
</context>
<context>
    <name>tarn::ClearButton</name>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
</context>
<context>
    <name>tarn::CodeView</name>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>tarn::ColumnMenu</name>
    <message>
        <source>Folder, in Results</source>
        <translation>Ordner, in Ergebnissen</translation>
    </message>
    <message>
        <source>Standard Columns</source>
        <translation>Standardspalten</translation>
    </message>
</context>
<context>
    <name>tarn::CommandPalette</name>
    <message>
        <source>No command fits.</source>
        <translation>Kein Befehl passt.</translation>
    </message>
    <message>
        <source>Command Palette</source>
        <translation>Befehlspalette</translation>
    </message>
    <message>
        <source>What do you want to do?</source>
        <translation>Was möchtest du tun?</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
</context>
<context>
    <name>tarn::CommandRegistry</name>
    <message>
        <source>No terminal could be opened. Name the one that you use in the settings.</source>
        <translation>Es konnte kein Terminal geöffnet werden. Gib in den Einstellungen an, welches du verwendest.</translation>
    </message>
    <message>
        <source>No editor could be opened. Name the one that you use in the settings.</source>
        <translation>Es konnte kein Editor geöffnet werden. Gib in den Einstellungen an, welchen du verwendest.</translation>
    </message>
    <message>
        <source>Finding what can be cleaned up is not built in yet.</source>
        <translation>Die Suche nach Dateien zum Aufräumen ist noch nicht eingebaut.</translation>
    </message>
    <message>
        <source>Finding duplicates is not built in yet.</source>
        <translation>Die Suche nach Duplikaten ist noch nicht eingebaut.</translation>
    </message>
    <message>
        <source>Suggesting names for files is not built in yet.</source>
        <translation>Vorschläge für Dateinamen sind noch nicht eingebaut.</translation>
    </message>
    <message>
        <source>No cloud service on this computer tells which files are downloaded.</source>
        <translation>Kein Cloud-Dienst auf diesem Computer teilt mit, welche Dateien geladen sind.</translation>
    </message>
    <message>
        <source>Playing music is not built in yet.</source>
        <translation>Die Musikwiedergabe ist noch nicht eingebaut.</translation>
    </message>
    <message>
        <source>No music is playing.</source>
        <translation>Es läuft keine Musik.</translation>
    </message>
    <message>
        <source>What lies in an archive can only be looked at and taken out.</source>
        <translation>Was in einem Archiv liegt, kann nur angesehen und herausgenommen werden.</translation>
    </message>
    <message>
        <source>No archive is selected.</source>
        <translation>Es ist kein Archiv ausgewählt.</translation>
    </message>
    <message>
        <source>No picture is selected.</source>
        <translation>Es ist kein Bild ausgewählt.</translation>
    </message>
    <message>
        <source>There is nothing to go back to.</source>
        <translation>Es gibt nichts, wohin zurückgegangen werden könnte.</translation>
    </message>
    <message>
        <source>There is nothing to go forward to.</source>
        <translation>Es gibt nichts, wohin vorwärts gegangen werden könnte.</translation>
    </message>
    <message>
        <source>Nothing encloses this place.</source>
        <translation>Dieser Ort hat keinen übergeordneten Ordner.</translation>
    </message>
    <message>
        <source>This place is not a folder.</source>
        <translation>Dieser Ort ist kein Ordner.</translation>
    </message>
    <message>
        <source>Nothing is being searched for.</source>
        <translation>Es wird nach nichts gesucht.</translation>
    </message>
    <message>
        <source>There is one pane only; Split View adds the other.</source>
        <translation>Es gibt nur einen Bereich; „Geteilte Ansicht“ fügt den zweiten hinzu.</translation>
    </message>
    <message>
        <source>The other pane shows no folder.</source>
        <translation>Der andere Bereich zeigt keinen Ordner.</translation>
    </message>
    <message>
        <source>No tab was closed.</source>
        <translation>Es wurde kein Tab geschlossen.</translation>
    </message>
    <message>
        <source>There is no other tab.</source>
        <translation>Es gibt keinen anderen Tab.</translation>
    </message>
    <message>
        <source>Go</source>
        <translation>Gehe zu</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Ablage</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>No window is open.</source>
        <translation>Es ist kein Fenster geöffnet.</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>Es ist nichts ausgewählt.</translation>
    </message>
    <message>
        <source>This works where a folder is shown.</source>
        <translation>Das geht, wo ein Ordner gezeigt wird.</translation>
    </message>
    <message>
        <source>Go to Home</source>
        <translation>Gehe zum Benutzerordner</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Edit Path</source>
        <translation>Pfad bearbeiten</translation>
    </message>
    <message>
        <source>Go to Folder…</source>
        <translation>Gehe zu Ordner …</translation>
    </message>
    <message>
        <source>Go to Desktop</source>
        <translation>Gehe zum Schreibtisch</translation>
    </message>
    <message>
        <source>Go to Documents</source>
        <translation>Gehe zu „Dokumente“</translation>
    </message>
    <message>
        <source>Go to Downloads</source>
        <translation>Gehe zu „Downloads“</translation>
    </message>
    <message>
        <source>Go to Applications</source>
        <translation>Gehe zu „Programme“</translation>
    </message>
    <message>
        <source>Cleanup</source>
        <translation>Aufräumen</translation>
    </message>
    <message>
        <source>Duplicates</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>Downloaded From</source>
        <translation>Geladen von</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Connect to Server…</source>
        <translation>Mit Server verbinden …</translation>
    </message>
    <message>
        <source>View as Grid</source>
        <translation>Als Raster</translation>
    </message>
    <message>
        <source>View as List</source>
        <translation>Als Liste</translation>
    </message>
    <message>
        <source>Show or Hide Inspector</source>
        <translation>Infobereich ein- oder ausblenden</translation>
    </message>
    <message>
        <source>Show or Hide Hidden Files</source>
        <translation>Versteckte Dateien ein- oder ausblenden</translation>
    </message>
    <message>
        <source>Split View</source>
        <translation>Geteilte Ansicht</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Show Transfers</source>
        <translation>Übertragungen zeigen</translation>
    </message>
    <message>
        <source>Undo History</source>
        <translation>Verlauf der Änderungen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Command Palette</source>
        <translation>Befehlspalette</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Quick Look</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Im Dateimanager zeigen</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>New Folder with Selection</source>
        <translation>Neuer Ordner mit Auswahl</translation>
    </message>
    <message>
        <source>New Text File</source>
        <translation>Neue Textdatei</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Smart Rename</source>
        <translation>Intelligent umbenennen</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einsetzen</translation>
    </message>
    <message>
        <source>Move Item Here</source>
        <translation>Objekt hierher bewegen</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Copy Path with ~</source>
        <translation>Pfad mit ~ kopieren</translation>
    </message>
    <message>
        <source>Copy Path for Terminal</source>
        <translation>Pfad für das Terminal kopieren</translation>
    </message>
    <message>
        <source>Copy File URL</source>
        <translation>Datei-URL kopieren</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>Komprimieren</translation>
    </message>
    <message>
        <source>Extract Archive</source>
        <translation>Archiv entpacken</translation>
    </message>
    <message>
        <source>Open in Terminal</source>
        <translation>Im Terminal öffnen</translation>
    </message>
    <message>
        <source>Open in Editor</source>
        <translation>Im Editor öffnen</translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
    <message>
        <source>Copy Text from Images</source>
        <translation>Text aus Bildern kopieren</translation>
    </message>
    <message>
        <source>Copy to Other Pane</source>
        <translation>In den anderen Bereich kopieren</translation>
    </message>
    <message>
        <source>Move to Other Pane</source>
        <translation>In den anderen Bereich bewegen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Keep Downloaded</source>
        <translation>Geladen behalten</translation>
    </message>
    <message>
        <source>Remove Download</source>
        <translation>Download entfernen</translation>
    </message>
    <message>
        <source>Save Search as Smart Folder</source>
        <translation>Suche als intelligenten Ordner sichern</translation>
    </message>
    <message>
        <source>Save Workspace…</source>
        <translation>Arbeitsbereich sichern …</translation>
    </message>
    <message>
        <source>New Tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>Reopen Closed Tab</source>
        <translation>Geschlossenen Tab wieder öffnen</translation>
    </message>
    <message>
        <source>Show Next Tab</source>
        <translation>Nächsten Tab zeigen</translation>
    </message>
    <message>
        <source>Show Previous Tab</source>
        <translation>Vorherigen Tab zeigen</translation>
    </message>
    <message>
        <source>Play or Pause Music</source>
        <translation>Musik abspielen oder anhalten</translation>
    </message>
    <message>
        <source>Next Song</source>
        <translation>Nächster Titel</translation>
    </message>
    <message>
        <source>Previous Song</source>
        <translation>Vorheriger Titel</translation>
    </message>
</context>
<context>
    <name>tarn::ConflictSheet</name>
    <message>
        <source>Do the same for all folders</source>
        <translation>Für alle Ordner übernehmen</translation>
    </message>
    <message>
        <source>Do the same for all files</source>
        <translation>Für alle Dateien übernehmen</translation>
    </message>
    <message>
        <source>Merging puts the items of both into one folder. What is replaced goes to the Trash.</source>
        <translation>Beim Zusammenführen kommen die Objekte beider in einen Ordner. Was ersetzt wird, kommt in den Papierkorb.</translation>
    </message>
    <message>
        <source>What is replaced goes to the Trash.</source>
        <translation>Was ersetzt wird, kommt in den Papierkorb.</translation>
    </message>
    <message>
        <source>Already There</source>
        <translation>Schon vorhanden</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Ends the whole transfer and removes what it has made (S)</source>
        <translation>Beendet die ganze Übertragung und entfernt, was sie angelegt hat (S)</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>Leaves both as they are (Esc)</source>
        <translation>Lässt beide, wie sie sind (Esc)</translation>
    </message>
    <message>
        <source>Keep Both</source>
        <translation>Beide behalten</translation>
    </message>
    <message>
        <source>Gives the new one a number (K)</source>
        <translation>Gibt der neuen eine Nummer (K)</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Moves the one that is there to the Trash (R)</source>
        <translation>Legt die vorhandene in den Papierkorb (R)</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Zusammenführen</translation>
    </message>
    <message>
        <source>Puts both into one folder (M)</source>
        <translation>Legt beide in einen Ordner (M)</translation>
    </message>
    <message>
        <source>A folder called “%1” is already in “%2”</source>
        <translation>Ein Ordner namens „%1“ ist schon in „%2“</translation>
    </message>
    <message>
        <source>“%1” is already in “%2”</source>
        <translation>„%1“ ist schon in „%2“</translation>
    </message>
    <message>
        <source>From “%1”</source>
        <translation>Aus „%1“</translation>
    </message>
</context>
<context>
    <name>tarn::ConflictSide</name>
    <message>
        <source>Newer</source>
        <translation>Neuer</translation>
    </message>
    <message>
        <source>Larger</source>
        <translation>Größer</translation>
    </message>
</context>
<context>
    <name>tarn::ConnectServerSheet</name>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Connect to Server</source>
        <translation>Mit Server verbinden</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Servers that were connected to before</source>
        <translation>Server, mit denen schon verbunden wurde</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>The name of a server, or an address that begins with smb, sftp, dav or davs.</source>
        <translation>Der Name eines Servers oder eine Adresse, die mit smb, sftp, dav oder davs beginnt.</translation>
    </message>
    <message>
        <source>Only addresses that begin with smb, sftp, dav, davs, http or https can be connected to.</source>
        <translation>Verbinden lässt sich nur mit Adressen, die mit smb, sftp, dav, davs, http oder https beginnen.</translation>
    </message>
    <message>
        <source>Connecting to “%1”…</source>
        <translation>Verbindung mit „%1“ wird hergestellt …</translation>
    </message>
    <message>
        <source>That did not do. Look at the name and the password.</source>
        <translation>Das hat nicht gereicht. Bitte Name und Passwort prüfen.</translation>
    </message>
</context>
<context>
    <name>tarn::ContentIndexService</name>
    <message>
        <source>Waiting for mains power</source>
        <translation>Wartet auf Netzstrom</translation>
    </message>
    <message>
        <source>Waiting until the computer has time</source>
        <translation>Wartet, bis der Computer Zeit hat</translation>
    </message>
    <message>
        <source>Reading Files for Search</source>
        <translation>Dateien werden für die Suche gelesen</translation>
    </message>
    <message>
        <source>Writing what was read…</source>
        <translation>Gelesenes wird geschrieben …</translation>
    </message>
    <message>
        <source>%1 of %2 · %3</source>
        <translation>%1 von %2 · %3</translation>
    </message>
</context>
<context>
    <name>tarn::CoreSentences</name>
    <message>
        <source>“%1”, “%2” and %3 more</source>
        <translation>„%1“, „%2“ und %3 weitere</translation>
    </message>
    <message>
        <source>“%1”, “%2” and “%3”</source>
        <translation>„%1“, „%2“ und „%3“</translation>
    </message>
    <message>
        <source>“%1” and “%2”</source>
        <translation>„%1“ und „%2“</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>Copy %1 to “%2”</source>
        <translation>%1 nach „%2“ kopieren</translation>
    </message>
    <message>
        <source>Move %1 to the Trash</source>
        <translation>%1 in den Papierkorb legen</translation>
    </message>
    <message>
        <source>Move %1 to “%2”</source>
        <translation>%1 nach „%2“ bewegen</translation>
    </message>
    <message>
        <source>New folder “%1” with %2</source>
        <translation>Neuer Ordner „%1“ für %2</translation>
    </message>
    <message>
        <source>New folder “%1”</source>
        <translation>Neuer Ordner „%1“</translation>
    </message>
    <message>
        <source>New File “%1”</source>
        <translation>Neue Datei „%1“</translation>
    </message>
    <message>
        <source>Duplicate %1</source>
        <translation>%1 duplizieren</translation>
    </message>
    <message>
        <source>Rename “%1” to “%2”</source>
        <translation>„%1“ in „%2“ umbenennen</translation>
    </message>
    <message>
        <source>Rename %1</source>
        <translation>%1 umbenennen</translation>
    </message>
    <message>
        <source>Compress %1</source>
        <translation>%1 komprimieren</translation>
    </message>
    <message>
        <source>Extract from “%1”</source>
        <translation>Aus „%1“ entpacken</translation>
    </message>
    <message>
        <source>Extract %1 from “%2”</source>
        <translation>%1 aus „%2“ entpacken</translation>
    </message>
    <message>
        <source>Extract %1</source>
        <translation>%1 entpacken</translation>
    </message>
    <message>
        <source>Tag %1 with “%2”</source>
        <translation>%1 mit „%2“ taggen</translation>
    </message>
    <message>
        <source>Tag “%1”</source>
        <translation>Mit „%1“ taggen</translation>
    </message>
    <message>
        <source>Remove the tag “%1” from %2</source>
        <translation>Tag „%1“ entfernen: %2</translation>
    </message>
    <message>
        <source>Remove tag “%1”</source>
        <translation>Tag „%1“ entfernen</translation>
    </message>
    <message>
        <source>Remove all tags from %1</source>
        <translation>Alle Tags entfernen: %1</translation>
    </message>
    <message>
        <source>Rename tag “%1” to “%2”</source>
        <translation>Tag „%1“ in „%2“ umbenennen</translation>
    </message>
    <message>
        <source>Change colour of tag “%1”</source>
        <translation>Farbe des Tags „%1“ ändern</translation>
    </message>
    <message>
        <source>%1 because you don’t have permission.</source>
        <translation>%1, weil die Berechtigung fehlt.</translation>
    </message>
    <message>
        <source>%1 because it no longer exists.</source>
        <translation>%1, weil es nicht mehr existiert.</translation>
    </message>
    <message>
        <source>%1 because it’s in use.</source>
        <translation>%1, weil gerade etwas darauf zugreift.</translation>
    </message>
    <message>
        <source>%1 because it is in use.</source>
        <translation>%1, weil gerade etwas darauf zugreift.</translation>
    </message>
    <message>
        <source>%1 because an item with that name already exists.</source>
        <translation>%1, weil es schon ein Objekt mit diesem Namen gibt.</translation>
    </message>
    <message>
        <source>%1 because the disk is full.</source>
        <translation>%1, weil der Datenträger voll ist.</translation>
    </message>
    <message>
        <source>%1 because the disk is read-only.</source>
        <translation>%1, weil der Datenträger schreibgeschützt ist.</translation>
    </message>
    <message>
        <source>%1 because the disk can’t be written to.</source>
        <translation>%1, weil auf den Datenträger nicht geschrieben werden kann.</translation>
    </message>
    <message>
        <source>%1 because another program keeps it busy.</source>
        <translation>%1, weil ein anderes Programm ihn beschäftigt.</translation>
    </message>
    <message>
        <source>%1 because it changed meanwhile.</source>
        <translation>%1, weil es sich inzwischen geändert hat.</translation>
    </message>
    <message>
        <source>%1 because it is a socket or a device.</source>
        <translation>%1, weil es ein Socket oder ein Gerät ist.</translation>
    </message>
    <message>
        <source>%1 because its disk has no Trash that can be used.</source>
        <translation>%1, weil der Datenträger keinen nutzbaren Papierkorb hat.</translation>
    </message>
    <message>
        <source>%1 because the Trash is inside it.</source>
        <translation>%1, weil der Papierkorb darin liegt.</translation>
    </message>
    <message>
        <source>%1.</source>
        <translation>%1.</translation>
    </message>
    <message>
        <source>Couldn’t create the folder</source>
        <translation>Der Ordner konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Couldn’t create the file</source>
        <translation>Die Datei konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Couldn’t copy “%1”</source>
        <translation>„%1“ konnte nicht kopiert werden</translation>
    </message>
    <message>
        <source>Couldn’t move “%1” to the Trash</source>
        <translation>„%1“ konnte nicht in den Papierkorb gelegt werden</translation>
    </message>
    <message>
        <source>Couldn’t move “%1”</source>
        <translation>„%1“ konnte nicht bewegt werden</translation>
    </message>
    <message>
        <source>Couldn’t move the items back</source>
        <translation>Die Objekte konnten nicht zurückbewegt werden</translation>
    </message>
    <message>
        <source>Couldn’t rename “%1”</source>
        <translation>„%1“ konnte nicht umbenannt werden</translation>
    </message>
    <message>
        <source>Couldn’t rename the files</source>
        <translation>Die Dateien konnten nicht umbenannt werden</translation>
    </message>
    <message>
        <source>Couldn’t duplicate “%1”</source>
        <translation>„%1“ konnte nicht dupliziert werden</translation>
    </message>
    <message>
        <source>Couldn’t remove “%1”</source>
        <translation>„%1“ konnte nicht entfernt werden</translation>
    </message>
    <message>
        <source>Couldn’t remove it</source>
        <translation>Das Original konnte nicht entfernt werden</translation>
    </message>
    <message>
        <source>Couldn’t change tags on “%1”</source>
        <translation>Die Tags von „%1“ konnten nicht geändert werden</translation>
    </message>
    <message>
        <source>Couldn’t compress</source>
        <translation>Das Komprimieren ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>Couldn’t unpack “%1”</source>
        <translation>„%1“ konnte nicht entpackt werden</translation>
    </message>
    <message>
        <source>Couldn’t eject “%1”</source>
        <translation>„%1“ konnte nicht ausgeworfen werden</translation>
    </message>
    <message>
        <source>Couldn’t connect to “%1”</source>
        <translation>Die Verbindung mit „%1“ konnte nicht hergestellt werden</translation>
    </message>
    <message>
        <source>Couldn’t start “%1”</source>
        <translation>„%1“ konnte nicht gestartet werden</translation>
    </message>
    <message>
        <source>Couldn’t write the index of texts</source>
        <translation>Der Index der Texte konnte nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Couldn’t change which programs open files</source>
        <translation>Welche Programme Dateien öffnen, konnte nicht geändert werden</translation>
    </message>
    <message>
        <source>You don’t have permission to do that.</source>
        <translation>Dafür fehlt die Berechtigung.</translation>
    </message>
    <message>
        <source>It doesn’t exist any more.</source>
        <translation>Es existiert nicht mehr.</translation>
    </message>
    <message>
        <source>It isn’t a folder.</source>
        <translation>Es ist kein Ordner.</translation>
    </message>
    <message>
        <source>The disk is full.</source>
        <translation>Der Datenträger ist voll.</translation>
    </message>
    <message>
        <source>Your disk quota is used up.</source>
        <translation>Der zugeteilte Speicherplatz ist aufgebraucht.</translation>
    </message>
    <message>
        <source>The disk can’t be written to.</source>
        <translation>Auf den Datenträger kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The disk couldn’t be read.</source>
        <translation>Der Datenträger konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>It is a link that leads back to itself.</source>
        <translation>Es ist ein Verweis, der zu sich selbst zurückführt.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Der Name ist zu lang.</translation>
    </message>
    <message>
        <source>Too many files are open.</source>
        <translation>Zu viele Dateien sind geöffnet.</translation>
    </message>
    <message>
        <source>The server isn’t responding.</source>
        <translation>Der Server antwortet nicht.</translation>
    </message>
    <message>
        <source>The server no longer knows it.</source>
        <translation>Der Server kennt es nicht mehr.</translation>
    </message>
    <message>
        <source>The name “%1” is already taken. Please choose a different name.</source>
        <translation>Der Name „%1“ ist schon vergeben. Bitte einen anderen Namen wählen.</translation>
    </message>
    <message>
        <source>“%1” can’t be found. It may have been moved or deleted.</source>
        <translation>„%1“ ist nicht zu finden. Vielleicht wurde es bewegt oder gelöscht.</translation>
    </message>
    <message>
        <source>“%1” no longer exists.</source>
        <translation>„%1“ existiert nicht mehr.</translation>
    </message>
    <message>
        <source>“%1” can’t be read.</source>
        <translation>„%1“ kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>A name can’t be empty.</source>
        <translation>Ein Name darf nicht leer sein.</translation>
    </message>
    <message>
        <source>Names can’t contain “/” or “:”.</source>
        <translation>Namen dürfen weder „/“ noch „:“ enthalten.</translation>
    </message>
    <message>
        <source>Names can’t contain “/” or “:”</source>
        <translation>Namen dürfen weder „/“ noch „:“ enthalten</translation>
    </message>
    <message>
        <source>Name would be empty</source>
        <translation>Der Name wäre leer</translation>
    </message>
    <message>
        <source>Name would start with a dot and be hidden</source>
        <translation>Der Name würde mit einem Punkt beginnen und wäre verborgen</translation>
    </message>
    <message>
        <source>Name is too long</source>
        <translation>Der Name ist zu lang</translation>
    </message>
    <message>
        <source>Same name as another file in this rename</source>
        <translation>Derselbe Name wie bei einer anderen dieser Dateien</translation>
    </message>
    <message>
        <source>A file with this name already exists</source>
        <translation>Es gibt schon eine Datei mit diesem Namen</translation>
    </message>
    <message>
        <source>The number is too large</source>
        <translation>Die Zahl ist zu groß</translation>
    </message>
    <message>
        <source>“%1” isn’t a valid date format</source>
        <translation>„%1“ ist kein gültiges Datumsformat</translation>
    </message>
    <message>
        <source>The file doesn’t say when it was taken</source>
        <translation>Die Datei sagt nicht, wann sie aufgenommen wurde</translation>
    </message>
    <message>
        <source>“%1” isn’t a valid regular expression</source>
        <translation>„%1“ ist kein gültiger regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Looking for “%1” takes too long</source>
        <translation>Die Suche nach „%1“ dauert zu lange</translation>
    </message>
    <message>
        <source>The replacement names a group that isn’t in “%1”</source>
        <translation>Die Ersetzung nennt eine Gruppe, die es in „%1“ nicht gibt</translation>
    </message>
    <message>
        <source>Can’t put “%1” inside itself.</source>
        <translation>„%1“ kann nicht in sich selbst gelegt werden.</translation>
    </message>
    <message>
        <source>Can’t replace “%1” because it contains the item being moved.</source>
        <translation>„%1“ kann nicht ersetzt werden, weil darin liegt, was bewegt wird.</translation>
    </message>
    <message>
        <source>The copy was cancelled.</source>
        <translation>Das Kopieren wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Copied “%1” but kept the original, because the copy couldn’t be written out.</source>
        <translation>„%1“ wurde kopiert, das Original aber behalten, weil die Kopie nicht zu Ende geschrieben werden konnte.</translation>
    </message>
    <message>
        <source>Copied “%1” but couldn’t remove the original.</source>
        <translation>„%1“ wurde kopiert, aber das Original blieb.</translation>
    </message>
    <message>
        <source>Not everything could be written to “%1”. Please check the disk before you rely on the copy.</source>
        <translation>Nicht alles konnte nach „%1“ geschrieben werden. Bitte den Datenträger prüfen, ehe man sich auf die Kopie verlässt.</translation>
    </message>
    <message>
        <source>%1 has already been moved to the Trash.</source>
        <translation>%1 liegt bereits im Papierkorb.</translation>
    </message>
    <message>
        <source>%1 have already been moved to the Trash.</source>
        <translation>%1 liegen bereits im Papierkorb.</translation>
    </message>
    <message>
        <source>%1 has already been moved to “%2”.</source>
        <translation>%1 wurde bereits nach „%2“ bewegt.</translation>
    </message>
    <message>
        <source>%1 have already been moved to “%2”.</source>
        <translation>%1 wurden bereits nach „%2“ bewegt.</translation>
    </message>
    <message>
        <source>%1 was replaced, and can be found in the Trash.</source>
        <translation>%1 wurde ersetzt und liegt im Papierkorb.</translation>
    </message>
    <message>
        <source>%1 were replaced, and can be found in the Trash.</source>
        <translation>%1 wurden ersetzt und liegen im Papierkorb.</translation>
    </message>
    <message>
        <source>The other disk doesn’t keep all tags, attributes and access rights of %1.</source>
        <translation>Der andere Datenträger behält nicht alle Tags, Attribute und Zugriffsrechte. Betroffen: %1.</translation>
    </message>
    <message>
        <source>Estimating…</source>
        <translation>Wird geschätzt …</translation>
    </message>
    <message>
        <source>A few seconds left</source>
        <translation>Noch ein paar Sekunden</translation>
    </message>
    <message>
        <source>About %1 seconds left</source>
        <translation>Noch etwa %1 Sekunden</translation>
    </message>
    <message>
        <source>About %1 minutes left</source>
        <translation>Noch etwa %1 Minuten</translation>
    </message>
    <message>
        <source>About %1 h %2 min left</source>
        <translation>Noch etwa %1 Std. %2 Min.</translation>
    </message>
    <message>
        <source>“%1” doesn’t exist any more.</source>
        <translation>„%1“ existiert nicht mehr.</translation>
    </message>
    <message>
        <source>Tarn isn’t allowed to open “%1”.</source>
        <translation>Tarn darf „%1“ nicht öffnen.</translation>
    </message>
    <message>
        <source>“%1” isn’t a folder.</source>
        <translation>„%1“ ist kein Ordner.</translation>
    </message>
    <message>
        <source>“%1” isn’t responding. It may be on a disk or server that is away.</source>
        <translation>„%1“ antwortet nicht. Vielleicht liegt es auf einem Datenträger oder Server, der nicht da ist.</translation>
    </message>
    <message>
        <source>This smart folder doesn’t exist any more. It may have been deleted.</source>
        <translation>Diesen intelligenten Ordner gibt es nicht mehr. Vielleicht wurde er gelöscht.</translation>
    </message>
    <message>
        <source>This archive couldn’t be read.</source>
        <translation>Dieses Archiv konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>It is damaged.</source>
        <translation>Es ist beschädigt.</translation>
    </message>
    <message>
        <source>It is incomplete or damaged.</source>
        <translation>Es ist unvollständig oder beschädigt.</translation>
    </message>
    <message>
        <source>It is encrypted with a password, and Tarn can’t open encrypted archives.</source>
        <translation>Es ist mit einem Passwort verschlüsselt, und verschlüsselte Archive kann Tarn nicht öffnen.</translation>
    </message>
    <message>
        <source>It is packed in a way that Tarn can’t unpack.</source>
        <translation>Es ist so gepackt, dass Tarn es nicht entpacken kann.</translation>
    </message>
    <message>
        <source>It is one part of an archive that was split into several files.</source>
        <translation>Es ist ein Teil eines Archivs, das auf mehrere Dateien verteilt wurde.</translation>
    </message>
    <message>
        <source>“%1” in it would be written outside of the folder.</source>
        <translation>„%1“ darin würde außerhalb des Ordners geschrieben.</translation>
    </message>
    <message>
        <source>“%1” in it is a second name of a file that isn’t there.</source>
        <translation>„%1“ darin ist ein zweiter Name einer Datei, die es nicht gibt.</translation>
    </message>
    <message>
        <source>It holds two different items called “%1”.</source>
        <translation>Es enthält zwei verschiedene Objekte namens „%1“.</translation>
    </message>
    <message>
        <source>There is no room to unpack it.</source>
        <translation>Zum Entpacken ist kein Platz.</translation>
    </message>
    <message>
        <source>It was cancelled.</source>
        <translation>Es wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Tarn can’t open this kind of archive.</source>
        <translation>Archive dieser Art kann Tarn nicht öffnen.</translation>
    </message>
    <message>
        <source>Nothing to compress.</source>
        <translation>Es gibt nichts zu komprimieren.</translation>
    </message>
    <message>
        <source>A smart folder needs a name.</source>
        <translation>Ein intelligenter Ordner braucht einen Namen.</translation>
    </message>
    <message>
        <source>A smart folder needs something to search for.</source>
        <translation>Ein intelligenter Ordner braucht etwas, wonach er sucht.</translation>
    </message>
    <message>
        <source>There is a smart folder called “%1” already.</source>
        <translation>Es gibt schon einen intelligenten Ordner namens „%1“.</translation>
    </message>
    <message>
        <source>A workspace needs a name.</source>
        <translation>Ein Arbeitsbereich braucht einen Namen.</translation>
    </message>
    <message>
        <source>There is a workspace called “%1” already.</source>
        <translation>Es gibt schon einen Arbeitsbereich namens „%1“.</translation>
    </message>
    <message>
        <source>“%1” is not a volume that can be ejected.</source>
        <translation>„%1“ ist kein Volume, das ausgeworfen werden kann.</translation>
    </message>
    <message>
        <source>The password wasn’t given.</source>
        <translation>Das Passwort wurde nicht eingegeben.</translation>
    </message>
    <message>
        <source>You aren’t allowed to.</source>
        <translation>Es ist nicht erlaubt.</translation>
    </message>
    <message>
        <source>“%1” isn’t installed.</source>
        <translation>„%1“ ist nicht installiert.</translation>
    </message>
    <message>
        <source>Which programs use it couldn’t be found out.</source>
        <translation>Welche Programme darauf zugreifen, war nicht herauszufinden.</translation>
    </message>
    <message>
        <source>Which programs use it can’t be found out here.</source>
        <translation>Welche Programme darauf zugreifen, ist hier nicht herauszufinden.</translation>
    </message>
    <message>
        <source>Which programs use it can’t be found out because “%1” isn’t installed.</source>
        <translation>Welche Programme darauf zugreifen, ist nicht herauszufinden, weil „%1“ nicht installiert ist.</translation>
    </message>
    <message>
        <source>Connected to “%1”, but the address leads to no folder. It must name a share or a folder that is there, and “%2” must be installed.</source>
        <translation>Die Verbindung mit „%1“ steht, aber die Adresse führt zu keinem Ordner. Sie muss eine Freigabe oder einen Ordner nennen, den es gibt, und „%2“ muss installiert sein.</translation>
    </message>
    <message>
        <source>This computer can’t connect to servers because gvfs isn’t installed. Its packages are “%1” and “%2”.</source>
        <translation>Dieser Computer kann sich mit keinem Server verbinden, weil gvfs nicht installiert ist. Die Pakete heißen „%1“ und „%2“.</translation>
    </message>
    <message>
        <source>Another program is filling the index of texts.</source>
        <translation>Ein anderes Programm füllt gerade den Index der Texte.</translation>
    </message>
    <message>
        <source>PDF documents can’t be read because Poppler isn’t installed.</source>
        <translation>PDF-Dokumente können nicht gelesen werden, weil Poppler nicht installiert ist.</translation>
    </message>
    <message>
        <source>Text in pictures can’t be recognised because Tesseract, or its data for the languages that are set, isn’t installed.</source>
        <translation>Text in Bildern kann nicht erkannt werden, weil Tesseract oder seine Daten für die gewählten Sprachen nicht installiert sind.</translation>
    </message>
    <message>
        <source>Documents of the format “%1” can’t be read because “%2” isn’t installed.</source>
        <translation>Dokumente des Formats „%1“ können nicht gelesen werden, weil „%2“ nicht installiert ist.</translation>
    </message>
    <message>
        <source>Documents can’t be read because the program “%1” isn’t installed.</source>
        <translation>Dokumente können nicht gelesen werden, weil das Programm „%1“ nicht installiert ist.</translation>
    </message>
    <message>
        <source>Documents can’t be read because “%1” doesn’t start.</source>
        <translation>Dokumente können nicht gelesen werden, weil „%1“ nicht startet.</translation>
    </message>
    <message>
        <source>Documents can’t be read because “%1” is of another version than Tarn.</source>
        <translation>Dokumente können nicht gelesen werden, weil „%1“ von einer anderen Version ist als Tarn.</translation>
    </message>
    <message>
        <source>Change permissions of %1</source>
        <translation>Rechte ändern: %1</translation>
    </message>
    <message>
        <source>Couldn’t change permissions of “%1”</source>
        <translation>Die Rechte von „%1“ konnten nicht geändert werden</translation>
    </message>
    <message>
        <source>Put back %1</source>
        <translation>%1 zurücklegen</translation>
    </message>
    <message>
        <source>%1 because nobody noted where it was.</source>
        <translation>%1, weil sich niemand gemerkt hat, wo es war.</translation>
    </message>
    <message>
        <source>Couldn’t put “%1” back</source>
        <translation>„%1“ konnte nicht zurückgelegt werden</translation>
    </message>
</context>
<context>
    <name>tarn::CoreTexts</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Änderungsdatum</translation>
    </message>
    <message>
        <source>Date Created</source>
        <translation>Erstellungsdatum</translation>
    </message>
    <message>
        <source>Date Added</source>
        <translation>Hinzugefügt am</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>A to Z</source>
        <translation>A bis Z</translation>
    </message>
    <message>
        <source>Z to A</source>
        <translation>Z bis A</translation>
    </message>
    <message>
        <source>Oldest First</source>
        <translation>Älteste zuerst</translation>
    </message>
    <message>
        <source>Newest First</source>
        <translation>Neueste zuerst</translation>
    </message>
    <message>
        <source>Smallest First</source>
        <translation>Kleinste zuerst</translation>
    </message>
    <message>
        <source>Largest First</source>
        <translation>Größte zuerst</translation>
    </message>
    <message>
        <source>Over 1 GB</source>
        <translation>Über 1 GB</translation>
    </message>
    <message>
        <source>100 MB to 1 GB</source>
        <translation>100 MB bis 1 GB</translation>
    </message>
    <message>
        <source>1 MB to 100 MB</source>
        <translation>1 MB bis 100 MB</translation>
    </message>
    <message>
        <source>100 KB to 1 MB</source>
        <translation>100 KB bis 1 MB</translation>
    </message>
    <message>
        <source>Under 100 KB</source>
        <translation>Unter 100 KB</translation>
    </message>
    <message>
        <source>No Tags</source>
        <translation>Ohne Tags</translation>
    </message>
    <message>
        <source>No Date</source>
        <translation>Ohne Datum</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <source>Previous 7 Days</source>
        <translation>Letzte 7 Tage</translation>
    </message>
    <message>
        <source>Previous 30 Days</source>
        <translation>Letzte 30 Tage</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Videos</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Musik</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Archives</source>
        <translation>Archive</translation>
    </message>
    <message>
        <source>Apps</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>Recents</source>
        <translation>Zuletzt benutzt</translation>
    </message>
    <message>
        <source>Smart Folder</source>
        <translation>Intelligenter Ordner</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Cleanup</source>
        <translation>Aufräumen</translation>
    </message>
    <message>
        <source>Duplicates</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>Sources</source>
        <translation>Quellen</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Only in the Cloud</source>
        <translation>Nur in der Cloud</translation>
    </message>
    <message>
        <source>On This Computer</source>
        <translation>Auf diesem Computer</translation>
    </message>
    <message>
        <source>No Colour</source>
        <translation>Ohne Farbe</translation>
    </message>
    <message>
        <source>Grey</source>
        <translation>Grau</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>Violett</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Gelb</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <source>Find and replace</source>
        <translation>Suchen und ersetzen</translation>
    </message>
    <message>
        <source>Add text</source>
        <translation>Text hinzufügen</translation>
    </message>
    <message>
        <source>Number in sequence</source>
        <translation>Fortlaufend nummerieren</translation>
    </message>
    <message>
        <source>Insert date</source>
        <translation>Datum einfügen</translation>
    </message>
    <message>
        <source>Change case</source>
        <translation>Groß-/Kleinschreibung ändern</translation>
    </message>
    <message>
        <source>Remove characters</source>
        <translation>Zeichen entfernen</translation>
    </message>
    <message>
        <source>Remove first characters</source>
        <translation>Erste Zeichen entfernen</translation>
    </message>
    <message>
        <source>Remove last characters</source>
        <translation>Letzte Zeichen entfernen</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Trash</source>
        <translation>Papierkorb</translation>
    </message>
    <message>
        <source>Large Files</source>
        <translation>Große Dateien</translation>
    </message>
    <message>
        <source>Screenshots</source>
        <translation>Bildschirmfotos</translation>
    </message>
    <message>
        <source>Installers</source>
        <translation>Installationsprogramme</translation>
    </message>
    <message>
        <source>Gray</source>
        <translation>Grau</translation>
    </message>
    <message>
        <source>Plain Text</source>
        <translation>Nur Text</translation>
    </message>
    <message>
        <source>Markdown</source>
        <translation>Markdown</translation>
    </message>
    <message>
        <source>Rich Text</source>
        <translation>Formatierter Text</translation>
    </message>
    <message>
        <source>Word Document</source>
        <translation>Word-Dokument</translation>
    </message>
    <message>
        <source>Excel Spreadsheet</source>
        <translation>Excel-Tabelle</translation>
    </message>
    <message>
        <source>PowerPoint Presentation</source>
        <translation>PowerPoint-Präsentation</translation>
    </message>
    <message>
        <source>HTML Page</source>
        <translation>HTML-Seite</translation>
    </message>
    <message>
        <source>CSV Table</source>
        <translation>CSV-Tabelle</translation>
    </message>
</context>
<context>
    <name>tarn::Counts</name>
    <message>
        <source>1 item</source>
        <translation>1 Objekt</translation>
    </message>
    <message numerus="yes">
        <source>%1 items</source>
        <translation>
            <numerusform>%1 Objekt</numerusform>
            <numerusform>%1 Objekte</numerusform>
        </translation>
    </message>
    <message>
        <source>1 Item</source>
        <translation>1 Objekt</translation>
    </message>
    <message numerus="yes">
        <source>%1 Items</source>
        <translation>
            <numerusform>%1 Objekt</numerusform>
            <numerusform>%1 Objekte</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 Datei</translation>
    </message>
    <message numerus="yes">
        <source>%1 files</source>
        <translation>
            <numerusform>%1 Datei</numerusform>
            <numerusform>%1 Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>1 result</source>
        <translation>1 Ergebnis</translation>
    </message>
    <message numerus="yes">
        <source>%1 results</source>
        <translation>
            <numerusform>%1 Ergebnis</numerusform>
            <numerusform>%1 Ergebnisse</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag</source>
        <translation>1 Tag</translation>
    </message>
    <message numerus="yes">
        <source>%1 tags</source>
        <translation>
            <numerusform>%1 Tag</numerusform>
            <numerusform>%1 Tags</numerusform>
        </translation>
    </message>
    <message>
        <source>1 source</source>
        <translation>1 Quelle</translation>
    </message>
    <message numerus="yes">
        <source>%1 sources</source>
        <translation>
            <numerusform>%1 Quelle</numerusform>
            <numerusform>%1 Quellen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 page</source>
        <translation>1 Seite</translation>
    </message>
    <message numerus="yes">
        <source>%1 pages</source>
        <translation>
            <numerusform>%1 Seite</numerusform>
            <numerusform>%1 Seiten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tab</source>
        <translation>1 Tab</translation>
    </message>
    <message numerus="yes">
        <source>%1 tabs</source>
        <translation>
            <numerusform>%1 Tab</numerusform>
            <numerusform>%1 Tabs</numerusform>
        </translation>
    </message>
    <message>
        <source>1 problem</source>
        <translation>1 Problem</translation>
    </message>
    <message numerus="yes">
        <source>%1 problems</source>
        <translation>
            <numerusform>%1 Problem</numerusform>
            <numerusform>%1 Probleme</numerusform>
        </translation>
    </message>
    <message>
        <source>1 row</source>
        <translation>1 Zeile</translation>
    </message>
    <message numerus="yes">
        <source>%1 rows</source>
        <translation>
            <numerusform>%1 Zeile</numerusform>
            <numerusform>%1 Zeilen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 sheet</source>
        <translation>1 Blatt</translation>
    </message>
    <message numerus="yes">
        <source>%1 sheets</source>
        <translation>
            <numerusform>%1 Blatt</numerusform>
            <numerusform>%1 Blätter</numerusform>
        </translation>
    </message>
    <message>
        <source>1 language</source>
        <translation>1 Sprache</translation>
    </message>
    <message numerus="yes">
        <source>%1 languages</source>
        <translation>
            <numerusform>%1 Sprache</numerusform>
            <numerusform>%1 Sprachen</numerusform>
        </translation>
    </message>
    <message>
        <source>Zero KB</source>
        <translation>0 kB</translation>
    </message>
</context>
<context>
    <name>tarn::EjectSheet</name>
    <message>
        <source>Process %1</source>
        <translation>Prozess %1</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>und %n weiterer</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, process %2</source>
        <translation>%1, Prozess %2</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Eject Anyway</source>
        <translation>Trotzdem auswerfen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>“%1” Is in Use</source>
        <translation>„%1“ wird verwendet</translation>
    </message>
    <message>
        <source>Programs that use it</source>
        <translation>Programme, die darauf zugreifen</translation>
    </message>
    <message>
        <source>What these programs have not written yet may be lost.</source>
        <translation>Was diese Programme noch nicht geschrieben haben, kann verloren gehen.</translation>
    </message>
    <message>
        <source>Ejected “%1”</source>
        <translation>„%1“ ausgeworfen</translation>
    </message>
</context>
<context>
    <name>tarn::FactRow</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Copy %1</source>
        <translation>%1 kopieren</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
</context>
<context>
    <name>tarn::FileDrop</name>
    <message>
        <source>Copy to “%1”</source>
        <translation>Nach „%1“ kopieren</translation>
    </message>
    <message>
        <source>Move to “%1”</source>
        <translation>Nach „%1“ bewegen</translation>
    </message>
    <message>
        <source>Move to the Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
</context>
<context>
    <name>tarn::FileOpener</name>
    <message>
        <source>There is no program that opens “%1”.</source>
        <translation>Es gibt kein Programm, das „%1“ öffnet.</translation>
    </message>
    <message>
        <source>“%1” could not be started.</source>
        <translation>„%1“ konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>“%1” ended right after it was started.</source>
        <translation>„%1“ hat sich gleich nach dem Start beendet.</translation>
    </message>
</context>
<context>
    <name>tarn::FileTabBar</name>
    <message>
        <source>Tabs</source>
        <translation>Tabs</translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation>Tab schließen</translation>
    </message>
</context>
<context>
    <name>tarn::FontPreview</name>
    <message>
        <source>%1, %2 characters</source>
        <translation>%1, %2 Zeichen</translation>
    </message>
    <message>
        <source>The font is damaged, or of a kind that cannot be shown.</source>
        <translation>Die Schrift ist beschädigt oder von einer Art, die nicht gezeigt werden kann.</translation>
    </message>
</context>
<context>
    <name>tarn::FontView</name>
    <message>
        <source>Characters of the font</source>
        <translation>Zeichen der Schrift</translation>
    </message>
    <message>
        <source>%1  U+%2</source>
        <translation>%1  U+%2</translation>
    </message>
</context>
<context>
    <name>tarn::GeneralSection</name>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>As the desktop</source>
        <translation>Wie der Schreibtisch</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Open the windows of last time</source>
        <translation>Fenster vom letzten Mal öffnen</translation>
    </message>
    <message>
        <source>With their tabs, when Tarn starts without being given a folder.</source>
        <translation>Mit ihren Tabs, wenn Tarn ohne Angabe eines Ordners startet.</translation>
    </message>
    <message>
        <source>Return opens what is selected</source>
        <translation>Eingabetaste öffnet die Auswahl</translation>
    </message>
    <message>
        <source>Otherwise it renames, and Ctrl+Down opens.</source>
        <translation>Sonst benennt sie um, und Strg+Pfeil abwärts öffnet.</translation>
    </message>
    <message>
        <source>“Open in Terminal” uses</source>
        <translation>„Im Terminal öffnen“ verwendet</translation>
    </message>
    <message>
        <source>“Open in Editor” uses</source>
        <translation>„Im Editor öffnen“ verwendet</translation>
    </message>
    <message>
        <source>“Copy Path” copies</source>
        <translation>„Pfad kopieren“ kopiert</translation>
    </message>
    <message>
        <source>the full path</source>
        <translation>den ganzen Pfad</translation>
    </message>
    <message>
        <source>the path with ~</source>
        <translation>den Pfad mit ~</translation>
    </message>
    <message>
        <source>the path for a terminal</source>
        <translation>den Pfad für ein Terminal</translation>
    </message>
    <message>
        <source>the file URL</source>
        <translation>die Datei-URL</translation>
    </message>
    <message>
        <source>what the desktop uses</source>
        <translation>was der Schreibtisch verwendet</translation>
    </message>
    <message>
        <source>Open Tarn at login</source>
        <translation>Tarn bei der Anmeldung öffnen</translation>
    </message>
    <message>
        <source>Make Tarn the default for folders</source>
        <translation>Tarn als Standard für Ordner verwenden</translation>
    </message>
    <message>
        <source>The desktop does not know Tarn: it was started without being installed.</source>
        <translation>Der Schreibtisch kennt Tarn nicht: Es wurde gestartet, ohne installiert zu sein.</translation>
    </message>
    <message>
        <source>Folders from other programs open in Tarn. Switched off, the program that was chosen before opens them again.</source>
        <translation>Ordner aus anderen Programmen öffnen sich in Tarn. Ausgeschaltet öffnet sie wieder das Programm, das zuvor gewählt war.</translation>
    </message>
    <message>
        <source>No program is chosen for the folders that other programs open.</source>
        <translation>Für Ordner, die andere Programme öffnen, ist kein Programm gewählt.</translation>
    </message>
    <message>
        <source>Folders from other programs open in %1 now.</source>
        <translation>Ordner aus anderen Programmen öffnen sich jetzt in %1.</translation>
    </message>
</context>
<context>
    <name>tarn::GoToFolderSheet</name>
    <message>
        <source>There is nothing at this path.</source>
        <translation>Unter diesem Pfad gibt es nichts.</translation>
    </message>
    <message>
        <source>Go</source>
        <translation>Gehe zu</translation>
    </message>
    <message>
        <source>Go to Folder</source>
        <translation>Gehe zu Ordner</translation>
    </message>
    <message>
        <source>~/Documents or a path from here</source>
        <translation>~/Dokumente oder ein Pfad von hier aus</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>tarn::HistoryRow</name>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>moved or changed since</source>
        <translation>seitdem bewegt oder geändert</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Widerrufen: %1</translation>
    </message>
    <message>
        <source>Its files have been moved or changed since.</source>
        <translation>Die Dateien wurden seitdem bewegt oder geändert.</translation>
    </message>
</context>
<context>
    <name>tarn::HistorySheet</name>
    <message>
        <source>Changes to files show up here for seven days.</source>
        <translation>Änderungen an Dateien stehen hier sieben Tage lang.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Undo History</source>
        <translation>Verlauf der Änderungen</translation>
    </message>
</context>
<context>
    <name>tarn::HotKeyField</name>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>This key cannot be used everywhere. Letters, digits and the space bar can.</source>
        <translation>Diese Taste lässt sich nicht überall verwenden. Buchstaben, Ziffern und die Leertaste gehen.</translation>
    </message>
    <message>
        <source>Hold Ctrl, Alt or the Super key, so that the key still types.</source>
        <translation>Strg, Alt oder die Super-Taste dazu halten, damit die Taste weiterhin schreibt.</translation>
    </message>
</context>
<context>
    <name>tarn::IconPreview</name>
    <message>
        <source>Modified %1</source>
        <translation>Geändert: %1</translation>
    </message>
    <message>
        <source>You may not look into this folder.</source>
        <translation>Du darfst nicht in diesen Ordner sehen.</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
</context>
<context>
    <name>tarn::ImagePreview</name>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Show all of the picture</source>
        <translation>Das ganze Bild zeigen</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>The picture is damaged, or of a kind that cannot be shown.</source>
        <translation>Das Bild ist beschädigt oder von einer Art, die nicht gezeigt werden kann.</translation>
    </message>
    <message>
        <source>The picture is too large to be shown here.</source>
        <translation>Das Bild ist zu groß, um hier gezeigt zu werden.</translation>
    </message>
</context>
<context>
    <name>tarn::IndexSection</name>
    <message>
        <source>Find files by the text in them</source>
        <translation>Dateien am Text darin finden</translation>
    </message>
    <message>
        <source>Read text in pictures and scanned pages</source>
        <translation>Text in Bildern und gescannten Seiten lesen</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>Leave Out…</source>
        <translation>Auslassen …</translation>
    </message>
    <message>
        <source>Tarn reads documents in the background and keeps their words on this computer.</source>
        <translation>Tarn liest Dokumente im Hintergrund und bewahrt ihre Wörter auf diesem Computer auf.</translation>
    </message>
    <message>
        <source>Languages of text in pictures</source>
        <translation>Sprachen der Texte in Bildern</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Folders whose files are read</source>
        <translation>Ordner, deren Dateien gelesen werden</translation>
    </message>
    <message>
        <source>Nothing in the folder is read, and what was read is forgotten.</source>
        <translation>Nichts im Ordner wird gelesen, und was gelesen wurde, wird vergessen.</translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation>Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Leave Out</source>
        <translation>Auslassen</translation>
    </message>
    <message>
        <source>The index may take</source>
        <translation>Der Index darf belegen</translation>
    </message>
    <message>
        <source>Room that the index may take</source>
        <translation>Platz, den der Index belegen darf</translation>
    </message>
    <message>
        <source>any room</source>
        <translation>beliebig viel Platz</translation>
    </message>
    <message>
        <source>Files read</source>
        <translation>Gelesene Dateien</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Benutzerordner</translation>
    </message>
    <message>
        <source>%1 (left out)</source>
        <translation>%1 (ausgelassen)</translation>
    </message>
    <message>
        <source>Read It Again</source>
        <translation>Wieder lesen</translation>
    </message>
    <message>
        <source>Forget This Folder…</source>
        <translation>Diesen Ordner vergessen …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Forget “%1”?</source>
        <translation>„%1“ vergessen?</translation>
    </message>
    <message>
        <source>What was read in this folder is removed from the index. Its files stay as they are.</source>
        <translation>Was in diesem Ordner gelesen wurde, wird aus dem Index entfernt. Die Dateien bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Forget Folder</source>
        <translation>Ordner vergessen</translation>
    </message>
    <message>
        <source>Rebuild the Index?</source>
        <translation>Index neu aufbauen?</translation>
    </message>
    <message>
        <source>Clear the Index?</source>
        <translation>Index löschen?</translation>
    </message>
    <message>
        <source>Everything is read again, which may take hours. Until then, searches for text take longer.</source>
        <translation>Alles wird neu gelesen, was Stunden dauern kann. Bis dahin dauern Suchen nach Text länger.</translation>
    </message>
    <message>
        <source>Searches for text take longer without it.</source>
        <translation>Ohne ihn dauern Suchen nach Text länger.</translation>
    </message>
    <message>
        <source>Rebuild</source>
        <translation>Neu aufbauen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>%1 (not installed)</source>
        <translation>%1 (nicht installiert)</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Sprachen</translation>
    </message>
    <message>
        <source>No data for recognising text is installed.</source>
        <translation>Es sind keine Daten zur Texterkennung installiert.</translation>
    </message>
    <message>
        <source>Counting…</source>
        <translation>Wird gezählt …</translation>
    </message>
    <message>
        <source>Nothing was read yet.</source>
        <translation>Es wurde noch nichts gelesen.</translation>
    </message>
    <message>
        <source>%1 with text</source>
        <translation>%1 mit Text</translation>
    </message>
    <message>
        <source>last read: %1</source>
        <translation>zuletzt gelesen: %1</translation>
    </message>
    <message>
        <source>Nothing is read.</source>
        <translation>Es wird nichts gelesen.</translation>
    </message>
    <message>
        <source>Starts in a moment.</source>
        <translation>Beginnt gleich.</translation>
    </message>
    <message>
        <source>Everything is read.</source>
        <translation>Alles ist gelesen.</translation>
    </message>
    <message>
        <source>Stopped until the next start.</source>
        <translation>Bis zum nächsten Start gestoppt.</translation>
    </message>
    <message>
        <source>Another program is reading files for the index.</source>
        <translation>Ein anderes Programm liest gerade Dateien für den Index.</translation>
    </message>
    <message>
        <source>Forgetting what was read…</source>
        <translation>Gelesenes wird vergessen …</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Writing what was read…</source>
        <translation>Gelesenes wird geschrieben …</translation>
    </message>
    <message>
        <source>Reading %1 of %2</source>
        <translation>%2, davon %1 gelesen</translation>
    </message>
    <message>
        <source>Looking for new files…</source>
        <translation>Suche nach neuen Dateien …</translation>
    </message>
    <message>
        <source>The index takes all the room it may. Older files are not in it.</source>
        <translation>Der Index belegt allen erlaubten Platz. Ältere Dateien sind nicht darin.</translation>
    </message>
    <message>
        <source>Rebuild…</source>
        <translation>Neu aufbauen …</translation>
    </message>
    <message>
        <source>Clear…</source>
        <translation>Löschen …</translation>
    </message>
</context>
<context>
    <name>tarn::Inspector</name>
    <message>
        <source>Calculate Size</source>
        <translation>Größe berechnen</translation>
    </message>
    <message>
        <source>Inspector</source>
        <translation>Infobereich</translation>
    </message>
    <message>
        <source>Nothing selected</source>
        <translation>Nichts ausgewählt</translation>
    </message>
    <message>
        <source>Selected</source>
        <translation>Ausgewählt</translation>
    </message>
    <message>
        <source>Calculating…</source>
        <translation>Wird berechnet …</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>More than %1: some folders cannot be read</source>
        <translation>Mehr als %1: einige Ordner sind nicht lesbar</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Permissions…</source>
        <translation>Rechte …</translation>
    </message>
</context>
<context>
    <name>tarn::ItemPermissions</name>
    <message>
        <source>No access</source>
        <translation>Kein Zugriff</translation>
    </message>
    <message>
        <source>Read, write and run</source>
        <translation>Lesen, schreiben und ausführen</translation>
    </message>
    <message>
        <source>Read and write</source>
        <translation>Lesen und schreiben</translation>
    </message>
    <message>
        <source>Read and run</source>
        <translation>Lesen und ausführen</translation>
    </message>
    <message>
        <source>Read only</source>
        <translation>Nur lesen</translation>
    </message>
    <message>
        <source>Write only</source>
        <translation>Nur schreiben</translation>
    </message>
    <message>
        <source>Run only</source>
        <translation>Nur ausführen</translation>
    </message>
</context>
<context>
    <name>tarn::JobRow</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>tarn::KeyField</name>
    <message>
        <source>Press keys…</source>
        <translation>Tasten drücken …</translation>
    </message>
</context>
<context>
    <name>tarn::MediaPlayer</name>
    <message>
        <source>The program that plays it is missing.</source>
        <translation>Das Programm, das dies abspielt, fehlt.</translation>
    </message>
    <message>
        <source>It is damaged, or of a kind that cannot be played.</source>
        <translation>Die Datei ist beschädigt oder von einer Art, die nicht abgespielt werden kann.</translation>
    </message>
    <message>
        <source>It is damaged, or takes too long to decode.</source>
        <translation>Die Datei ist beschädigt oder braucht zu lange zum Decodieren.</translation>
    </message>
</context>
<context>
    <name>tarn::MediaPreview</name>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>No sound: this computer has no sound system that answers.</source>
        <translation>Kein Ton: auf diesem Computer antwortet kein Tonsystem.</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Cover</source>
        <translation>Cover</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>%1 (K)</source>
        <translation>%1 (K)</translation>
    </message>
    <message>
        <source>Turn Sound On</source>
        <translation>Ton einschalten</translation>
    </message>
    <message>
        <source>Turn Sound Off</source>
        <translation>Ton ausschalten</translation>
    </message>
    <message>
        <source>%1 (M)</source>
        <translation>%1 (M)</translation>
    </message>
    <message>
        <source>%1 / %2</source>
        <translation>%1 / %2</translation>
    </message>
</context>
<context>
    <name>tarn::MemberFile</name>
    <message>
        <source>It is too large to be shown from inside of the archive.</source>
        <translation>Das ist zu groß, um aus dem Archiv heraus gezeigt zu werden.</translation>
    </message>
</context>
<context>
    <name>tarn::NameSheet</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>tarn::NewFileMenu</name>
    <message>
        <source>New File</source>
        <translation>Neue Datei</translation>
    </message>
    <message>
        <source>Open Templates Folder…</source>
        <translation>Vorlagenordner öffnen …</translation>
    </message>
    <message>
        <source>Drop any file into the Templates folder to add it to New File.</source>
        <translation>Lege eine beliebige Datei in den Vorlagenordner, um sie unter „Neue Datei“ zu finden.</translation>
    </message>
</context>
<context>
    <name>tarn::NewSmartFolderSheet</name>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>New Smart Folder</source>
        <translation>Neuer intelligenter Ordner</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>pdfs from last week</source>
        <translation>pdfs from last week</translation>
    </message>
    <message>
        <source>the home folder</source>
        <translation>im Benutzerordner</translation>
    </message>
    <message>
        <source>the whole computer</source>
        <translation>auf dem ganzen Computer</translation>
    </message>
    <message>
        <source>Search for</source>
        <translation>Suchen nach</translation>
    </message>
    <message>
        <source>Look in</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>Names with %1</source>
        <translation>Namen mit %1</translation>
    </message>
    <message>
        <source>Edit Smart Folder</source>
        <translation>Intelligenten Ordner bearbeiten</translation>
    </message>
</context>
<context>
    <name>tarn::NewTagSheet</name>
    <message>
        <source>Add Tag</source>
        <translation>Tag hinzufügen</translation>
    </message>
    <message>
        <source>New Tag</source>
        <translation>Neuer Tag</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Name of the tag</source>
        <translation>Name des Tags</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
</context>
<context>
    <name>tarn::OnboardingSheet</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Do anything by its name</source>
        <translation>Alles über seinen Namen tun</translation>
    </message>
    <message>
        <source>Look into what is selected</source>
        <translation>In die Auswahl hineinsehen</translation>
    </message>
    <message>
        <source>Type a path</source>
        <translation>Einen Pfad eingeben</translation>
    </message>
    <message>
        <source>Open a tab</source>
        <translation>Einen Tab öffnen</translation>
    </message>
    <message>
        <source>Show two folders side by side</source>
        <translation>Zwei Ordner nebeneinander zeigen</translation>
    </message>
    <message>
        <source>See every change, and undo it</source>
        <translation>Jede Änderung sehen und widerrufen</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Say What You Are Looking For</source>
        <translation>Sag, was du suchst</translation>
    </message>
    <message>
        <source>Find Files by What Is in Them</source>
        <translation>Finde Dateien an ihrem Inhalt</translation>
    </message>
    <message>
        <source>A Few Keys to Begin With</source>
        <translation>Ein paar Tasten für den Anfang</translation>
    </message>
    <message>
        <source>Type it as you would say it. Below the search field you see how it was understood, and can take parts of it away.</source>
        <translation>Schreib es, wie du es sagen würdest, auf Englisch. Unter dem Suchfeld siehst du, wie es verstanden wurde, und kannst Teile davon wegnehmen.</translation>
    </message>
    <message>
        <source>pdfs from last week over 5 mb</source>
        <translation>pdfs from last week over 5 mb</translation>
    </message>
    <message>
        <source>By kind, date and size</source>
        <translation>Nach Art, Datum und Größe</translation>
    </message>
    <message>
        <source>photos from march in Downloads</source>
        <translation>photos from march in Downloads</translation>
    </message>
    <message>
        <source>By month and folder</source>
        <translation>Nach Monat und Ordner</translation>
    </message>
    <message>
        <source>invoices containing “total due”</source>
        <translation>invoices containing “total due”</translation>
    </message>
    <message>
        <source>By name, and by the text inside</source>
        <translation>Nach dem Namen und dem Text darin</translation>
    </message>
    <message>
        <source>Tarn can read your documents while the computer has nothing else to do, so that searches find what they say. The index stays on this computer.</source>
        <translation>Tarn kann deine Dokumente lesen, während der Computer nichts anderes zu tun hat, damit Suchen finden, was darin steht. Der Index bleibt auf diesem Computer.</translation>
    </message>
    <message>
        <source>Find files by the text in them</source>
        <translation>Dateien am Text darin finden</translation>
    </message>
    <message>
        <source>Read text in pictures and scanned pages</source>
        <translation>Text in Bildern und gescannten Seiten lesen</translation>
    </message>
    <message>
        <source>Which folders are read is in the settings.</source>
        <translation>Welche Ordner gelesen werden, steht in den Einstellungen.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Los geht’s</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
</context>
<context>
    <name>tarn::OpenWithMenu</name>
    <message>
        <source>Open With</source>
        <translation>Öffnen mit</translation>
    </message>
    <message>
        <source>Looking for Programs…</source>
        <translation>Programme werden gesucht …</translation>
    </message>
    <message>
        <source>%1 (default)</source>
        <translation>%1 (Standard)</translation>
    </message>
    <message>
        <source>No program is known for this kind of file.</source>
        <translation>Für Dateien dieser Art ist kein Programm bekannt.</translation>
    </message>
    <message>
        <source>Other Application…</source>
        <translation>Anderes Programm …</translation>
    </message>
</context>
<context>
    <name>tarn::OpenWithSheet</name>
    <message>
        <source>Always open this kind of file with it</source>
        <translation>Dateien dieser Art immer damit öffnen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open “%1” With</source>
        <translation>„%1“ öffnen mit</translation>
    </message>
    <message numerus="yes">
        <source>Open %n Items With</source>
        <translation>
            <numerusform>%n Objekt öffnen mit</numerusform>
            <numerusform>%n Objekte öffnen mit</numerusform>
        </translation>
    </message>
    <message>
        <source>Name of the application</source>
        <translation>Name des Programms</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Always open files of the kind “%1” with it</source>
        <translation>Dateien der Art „%1“ immer damit öffnen</translation>
    </message>
</context>
<context>
    <name>tarn::OverviewPage</name>
    <message>
        <source>Tags and sources</source>
        <translation>Tags und Quellen</translation>
    </message>
</context>
<context>
    <name>tarn::PDFPreview</name>
    <message>
        <source>The document is protected by a password.</source>
        <translation>Das Dokument ist durch ein Passwort geschützt.</translation>
    </message>
    <message>
        <source>The program that reads documents is missing.</source>
        <translation>Das Programm, das Dokumente liest, fehlt.</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>Das Dokument ist beschädigt.</translation>
    </message>
    <message>
        <source>The document is damaged, or takes too long to draw.</source>
        <translation>Das Dokument ist beschädigt oder braucht zu lange zum Zeichnen.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>tarn::PageView</name>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>tarn::PaletteEntries</name>
    <message>
        <source>Recent Folders</source>
        <translation>Zuletzt benutzte Ordner</translation>
    </message>
    <message>
        <source>Workspaces</source>
        <translation>Arbeitsbereiche</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Weiteres</translation>
    </message>
</context>
<context>
    <name>tarn::PaneGridView</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
</context>
<context>
    <name>tarn::PaneHeader</name>
    <message>
        <source>Close This Pane</source>
        <translation>Diesen Bereich schließen</translation>
    </message>
    <message>
        <source>Close Pane “%1”</source>
        <translation>Bereich „%1“ schließen</translation>
    </message>
</context>
<context>
    <name>tarn::PaneItems</name>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>tarn::PaneListView</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
</context>
<context>
    <name>tarn::PaneMenu</name>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Rename %1…</source>
        <translation>%1 umbenennen …</translation>
    </message>
    <message>
        <source>Extract Here</source>
        <translation>Hier entpacken</translation>
    </message>
    <message>
        <source>Extract Everything</source>
        <translation>Alles entpacken</translation>
    </message>
    <message>
        <source>Fold All Groups</source>
        <translation>Alle Gruppen schließen</translation>
    </message>
    <message>
        <source>Unfold All Groups</source>
        <translation>Alle Gruppen öffnen</translation>
    </message>
    <message>
        <source>Sort By</source>
        <translation>Sortieren nach</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Group By</source>
        <translation>Gruppieren nach</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu den Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Permissions…</source>
        <translation>Rechte …</translation>
    </message>
    <message>
        <source>Open in New Tabs</source>
        <translation>In neuen Tabs öffnen</translation>
    </message>
    <message>
        <source>Open in New Tab</source>
        <translation>In neuem Tab öffnen</translation>
    </message>
    <message>
        <source>Open in New Window</source>
        <translation>In neuem Fenster öffnen</translation>
    </message>
    <message>
        <source>Put Back</source>
        <translation>Zurücklegen</translation>
    </message>
</context>
<context>
    <name>tarn::PaneView</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>tarn::PaneWidget</name>
    <message>
        <source>Smart Folder Not Found</source>
        <translation>Intelligenter Ordner nicht gefunden</translation>
    </message>
    <message>
        <source>Go to Home Folder</source>
        <translation>Zum Benutzerordner</translation>
    </message>
    <message>
        <source>No Permission</source>
        <translation>Keine Berechtigung</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Archive Not Found</source>
        <translation>Archiv nicht gefunden</translation>
    </message>
    <message>
        <source>Folder Not Found</source>
        <translation>Ordner nicht gefunden</translation>
    </message>
    <message>
        <source>Go to Enclosing Folder</source>
        <translation>Zum übergeordneten Ordner</translation>
    </message>
    <message>
        <source>Can’t Open This Archive</source>
        <translation>Das Archiv kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Can’t Show This Folder</source>
        <translation>Der Ordner kann nicht gezeigt werden</translation>
    </message>
    <message>
        <source>No Results</source>
        <translation>Keine Ergebnisse</translation>
    </message>
    <message>
        <source>Nothing in “%1” matches.</source>
        <translation>Nichts in „%1“ passt.</translation>
    </message>
    <message>
        <source>Search Home</source>
        <translation>Benutzerordner durchsuchen</translation>
    </message>
    <message>
        <source>Nothing in your home folder matches.</source>
        <translation>Nichts in deinem Benutzerordner passt.</translation>
    </message>
    <message>
        <source>Search This Computer</source>
        <translation>Diesen Computer durchsuchen</translation>
    </message>
    <message>
        <source>Nothing on this computer matches.</source>
        <translation>Nichts auf diesem Computer passt.</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche löschen</translation>
    </message>
    <message>
        <source>Trash Is Empty</source>
        <translation>Der Papierkorb ist leer</translation>
    </message>
    <message>
        <source>What is deleted comes here first.</source>
        <translation>Was gelöscht wird, kommt zuerst hierher.</translation>
    </message>
    <message>
        <source>Archive Is Empty</source>
        <translation>Das Archiv ist leer</translation>
    </message>
    <message>
        <source>Folder Is Empty</source>
        <translation>Der Ordner ist leer</translation>
    </message>
    <message>
        <source>There is nothing in it to unpack.</source>
        <translation>Es gibt darin nichts zu entpacken.</translation>
    </message>
    <message>
        <source>What is put here shows up at once.</source>
        <translation>Was hierher gelegt wird, erscheint sofort.</translation>
    </message>
    <message>
        <source>There is nothing here, unless it is hidden.</source>
        <translation>Hier ist nichts, es sei denn, es ist versteckt.</translation>
    </message>
    <message>
        <source>Show Hidden Files</source>
        <translation>Versteckte Dateien zeigen</translation>
    </message>
    <message>
        <source>No Sources</source>
        <translation>Keine Quellen</translation>
    </message>
    <message>
        <source>Files that remember where they were downloaded from show up here, each under its website or app.</source>
        <translation>Dateien, die noch wissen, woher sie geladen wurden, stehen hier unter ihrer Website oder App.</translation>
    </message>
    <message>
        <source>Nothing Only in the Cloud</source>
        <translation>Nichts nur in der Cloud</translation>
    </message>
    <message>
        <source>Nothing Here</source>
        <translation>Hier ist nichts</translation>
    </message>
    <message>
        <source>Everything here is on this computer.</source>
        <translation>Alles hier liegt auf diesem Computer.</translation>
    </message>
    <message>
        <source>Everything here is only in the cloud.</source>
        <translation>Alles hier liegt nur in der Cloud.</translation>
    </message>
    <message>
        <source>Show Everything</source>
        <translation>Alles zeigen</translation>
    </message>
    <message>
        <source>Nothing Tagged “%1”</source>
        <translation>Nichts hat den Tag „%1“</translation>
    </message>
    <message>
        <source>Files and folders that get this tag show up here.</source>
        <translation>Dateien und Ordner, die diesen Tag bekommen, stehen hier.</translation>
    </message>
    <message>
        <source>Nothing from %1</source>
        <translation>Nichts von %1</translation>
    </message>
    <message>
        <source>What you download from there shows up here.</source>
        <translation>Was du von dort lädst, steht hier.</translation>
    </message>
    <message>
        <source>Nothing Found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message>
        <source>Nothing matches “%1” now. What will, shows up here.</source>
        <translation>Zurzeit passt nichts zu „%1“. Was später passt, steht dann hier.</translation>
    </message>
    <message>
        <source>No Recent Files</source>
        <translation>Keine zuletzt benutzten Dateien</translation>
    </message>
    <message>
        <source>Files you open show up here for 30 days.</source>
        <translation>Dateien, die du öffnest, stehen hier 30 Tage lang.</translation>
    </message>
    <message>
        <source>No Images</source>
        <translation>Keine Bilder</translation>
    </message>
    <message>
        <source>Pictures in your home folder show up here.</source>
        <translation>Bilder aus deinem Benutzerordner stehen hier.</translation>
    </message>
    <message>
        <source>No Videos</source>
        <translation>Keine Videos</translation>
    </message>
    <message>
        <source>Films and clips in your home folder show up here.</source>
        <translation>Filme und Clips aus deinem Benutzerordner stehen hier.</translation>
    </message>
    <message>
        <source>No Music</source>
        <translation>Keine Musik</translation>
    </message>
    <message>
        <source>Songs and recordings in your home folder show up here.</source>
        <translation>Musik und Aufnahmen aus deinem Benutzerordner stehen hier.</translation>
    </message>
    <message>
        <source>No Documents</source>
        <translation>Keine Dokumente</translation>
    </message>
    <message>
        <source>Texts, spreadsheets and presentations in your home folder show up here.</source>
        <translation>Texte, Tabellen und Präsentationen aus deinem Benutzerordner stehen hier.</translation>
    </message>
    <message>
        <source>No Archives</source>
        <translation>Keine Archive</translation>
    </message>
    <message>
        <source>Archives and installers in your home folder show up here.</source>
        <translation>Archive und Installationsdateien aus deinem Benutzerordner stehen hier.</translation>
    </message>
    <message>
        <source>No Apps</source>
        <translation>Keine Programme</translation>
    </message>
    <message>
        <source>Programs kept in your home folder show up here.</source>
        <translation>Programme aus deinem Benutzerordner stehen hier.</translation>
    </message>
    <message>
        <source>%1 Esc stops it</source>
        <translation>%1 Esc bricht ab</translation>
    </message>
    <message>
        <source>Reading “%1”… Esc stops it</source>
        <translation>„%1“ wird gelesen … Esc bricht ab</translation>
    </message>
    <message>
        <source>All %1 selected</source>
        <translation>Alle %1 ausgewählt</translation>
    </message>
    <message>
        <source>%1 of %2 selected</source>
        <translation>%2, davon %1 ausgewählt</translation>
    </message>
    <message>
        <source>%1 so far</source>
        <translation>bisher %1</translation>
    </message>
    <message>
        <source>%1 · searched %2 in under %3 s</source>
        <translation>%1 · %2 in unter %3 s durchsucht</translation>
    </message>
    <message>
        <source>%1 · searched %2 in %3 s</source>
        <translation>%1 · %2 in %3 s durchsucht</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>Wird geladen …</translation>
    </message>
    <message>
        <source>The first %1</source>
        <translation>Die ersten %1</translation>
    </message>
    <message>
        <source>Finding what can be cleaned up is not built in yet.</source>
        <translation>Die Suche nach Dateien zum Aufräumen ist noch nicht eingebaut.</translation>
    </message>
    <message>
        <source>Finding duplicates is not built in yet.</source>
        <translation>Die Suche nach Duplikaten ist noch nicht eingebaut.</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>%1 too large to be read</source>
        <translation>%1 zu groß zum Lesen</translation>
    </message>
</context>
<context>
    <name>tarn::PathBar</name>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Folders further up</source>
        <translation>Weiter oben liegende Ordner</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Benutzerordner</translation>
    </message>
</context>
<context>
    <name>tarn::PathEdit</name>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>There is nothing at this path.</source>
        <translation>Unter diesem Pfad gibt es nichts.</translation>
    </message>
</context>
<context>
    <name>tarn::PermissionsSheet</name>
    <message>
        <source>Apply to everything inside</source>
        <translation>Auf alles darin anwenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>Permissions of %1</source>
        <translation>Rechte: %1</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Eigentümer</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Others</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>Permissions as letters</source>
        <translation>Rechte als Buchstaben</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Schreiben</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Only their owners can change this.</source>
        <translation>Das können nur die Eigentümer ändern.</translation>
    </message>
    <message>
        <source>Only the owner, %1, can change this.</source>
        <translation>Das kann nur %1 ändern, dem es gehört.</translation>
    </message>
    <message>
        <source>Files inside can be run afterwards only if they could be run before.</source>
        <translation>Dateien darin lassen sich danach nur ausführen, wenn sie sich vorher ausführen ließen.</translation>
    </message>
</context>
<context>
    <name>tarn::PictureTexts</name>
    <message>
        <source>No text was found in the picture.</source>
        <translation>Im Bild wurde kein Text gefunden.</translation>
    </message>
    <message>
        <source>No text was found in the pictures.</source>
        <translation>In den Bildern wurde kein Text gefunden.</translation>
    </message>
    <message>
        <source>Copied the text of one picture.</source>
        <translation>Text eines Bildes kopiert.</translation>
    </message>
    <message numerus="yes">
        <source>Copied the texts of %n pictures.</source>
        <translation>
            <numerusform>Text aus %n Bild kopiert.</numerusform>
            <numerusform>Texte aus %n Bildern kopiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>Copy Text from Images</source>
        <translation>Text aus Bildern kopieren</translation>
    </message>
</context>
<context>
    <name>tarn::PictureView</name>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
</context>
<context>
    <name>tarn::PlaceOverview</name>
    <message>
        <source>No items</source>
        <translation>Keine Objekte</translation>
    </message>
</context>
<context>
    <name>tarn::PreviewFacts</name>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1 (%2 Bytes)</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>Dimensions</source>
        <translation>Abmessungen</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Album</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Lens</source>
        <translation>Objektiv</translation>
    </message>
    <message>
        <source>Taken</source>
        <translation>Aufgenommen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Codecs</source>
        <translation>Codecs</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Where From</source>
        <translation>Herkunft</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Added</source>
        <translation>Hinzugefügt</translation>
    </message>
    <message>
        <source>Opened</source>
        <translation>Geöffnet</translation>
    </message>
    <message>
        <source>Link To</source>
        <translation>Verweist auf</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Size of Files</source>
        <translation>Größe der Dateien</translation>
    </message>
    <message>
        <source>Total Size</source>
        <translation>Gesamtgröße</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Kinds</source>
        <translation>Arten</translation>
    </message>
    <message>
        <source>Oldest</source>
        <translation>Älteste</translation>
    </message>
    <message>
        <source>Newest</source>
        <translation>Neueste</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Eigentümer</translation>
    </message>
    <message>
        <source>Access</source>
        <translation>Zugriff</translation>
    </message>
</context>
<context>
    <name>tarn::PreviewMembers</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
</context>
<context>
    <name>tarn::QuickLook</name>
    <message>
        <source>Quick Look</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Previous File</source>
        <translation>Vorherige Datei</translation>
    </message>
    <message>
        <source>Next File</source>
        <translation>Nächste Datei</translation>
    </message>
    <message>
        <source>Full Screen (F)</source>
        <translation>Vollbild (F)</translation>
    </message>
    <message>
        <source>Open (Return)</source>
        <translation>Öffnen (Eingabetaste)</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Leave Full Screen (F)</source>
        <translation>Vollbild verlassen (F)</translation>
    </message>
</context>
<context>
    <name>tarn::QuickSearchKey</name>
    <message>
        <source>Quick search</source>
        <translation>Schnellsuche</translation>
    </message>
    <message>
        <source>%1 opens it, whatever program is in front.</source>
        <translation>%1 öffnet sie, egal welches Programm vorne ist.</translation>
    </message>
    <message>
        <source>The desktop knows it, but has given it no keys. Choose some in the desktop’s keyboard settings.</source>
        <translation>Der Schreibtisch kennt sie, hat ihr aber keine Tasten gegeben. Sie lassen sich in seinen Tastatureinstellungen wählen.</translation>
    </message>
    <message>
        <source>The desktop opens it with %1.</source>
        <translation>Der Schreibtisch öffnet sie mit %1.</translation>
    </message>
    <message>
        <source>This desktop gives such keys to programs that ask for them.</source>
        <translation>Dieser Schreibtisch gibt Programmen solche Tasten, wenn sie danach fragen.</translation>
    </message>
    <message>
        <source>Another program has %1 already. Choose other keys.</source>
        <translation>Ein anderes Programm hat %1 schon. Bitte andere Tasten wählen.</translation>
    </message>
    <message>
        <source>This keyboard has no such key. Choose other keys.</source>
        <translation>Diese Tastatur hat keine solche Taste. Bitte andere Tasten wählen.</translation>
    </message>
    <message>
        <source>This desktop gives programs no keys for everywhere. Its keyboard settings may let you choose keys for the command “tarn --quick-search”.</source>
        <translation>Dieser Schreibtisch gibt Programmen keine Tasten, die überall gelten. Vielleicht lassen sich in seinen Tastatureinstellungen Tasten für den Befehl „tarn --quick-search“ wählen.</translation>
    </message>
</context>
<context>
    <name>tarn::QuickSearchPanel</name>
    <message>
        <source>Nothing found.</source>
        <translation>Nichts gefunden.</translation>
    </message>
    <message>
        <source>Quick Search</source>
        <translation>Schnellsuche</translation>
    </message>
    <message>
        <source>Find a file</source>
        <translation>Datei finden</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>%1 opens · %2 shows it in its folder</source>
        <translation>%1 öffnet · %2 zeigt im Ordner</translation>
    </message>
</context>
<context>
    <name>tarn::RenameEditor</name>
    <message>
        <source>New name</source>
        <translation>Neuer Name</translation>
    </message>
</context>
<context>
    <name>tarn::RenameFavoriteSheet</name>
    <message>
        <source>Rename Favourite</source>
        <translation>Favorit umbenennen</translation>
    </message>
    <message>
        <source>Name in the sidebar</source>
        <translation>Name in der Seitenleiste</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>The sidebar shows the folder’s own name again.</source>
        <translation>Die Seitenleiste zeigt wieder den Namen des Ordners.</translation>
    </message>
    <message>
        <source>%1 keeps its own name.</source>
        <translation>%1 behält den eigenen Namen.</translation>
    </message>
</context>
<context>
    <name>tarn::RenameModel</name>
    <message>
        <source>Working out the new names…</source>
        <translation>Neue Namen werden ermittelt …</translation>
    </message>
    <message>
        <source>One name can’t be used.</source>
        <translation>Ein Name kann nicht verwendet werden.</translation>
    </message>
    <message>
        <source>%1 names can’t be used.</source>
        <translation>%1 Namen können nicht verwendet werden.</translation>
    </message>
    <message>
        <source>Add a rule to change the names.</source>
        <translation>Füge eine Regel hinzu, um die Namen zu ändern.</translation>
    </message>
    <message>
        <source>Say in the rules what to change.</source>
        <translation>Gib in den Regeln an, was zu ändern ist.</translation>
    </message>
    <message>
        <source>No name changes.</source>
        <translation>Kein Name ändert sich.</translation>
    </message>
    <message>
        <source>unchanged</source>
        <translation>unverändert</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>New Name</source>
        <translation>Neuer Name</translation>
    </message>
</context>
<context>
    <name>tarn::RenamePreviewView</name>
    <message>
        <source>New names</source>
        <translation>Neue Namen</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
</context>
<context>
    <name>tarn::RenameSheet</name>
    <message>
        <source>Rename %1</source>
        <translation>%1 umbenennen</translation>
    </message>
    <message>
        <source>Add Rule</source>
        <translation>Regel hinzufügen</translation>
    </message>
    <message>
        <source>Include the extension</source>
        <translation>Suffix einbeziehen</translation>
    </message>
    <message>
        <source>The rules see “Report.pdf” instead of “Report”.</source>
        <translation>Die Regeln sehen „Bericht.pdf“ statt „Bericht“.</translation>
    </message>
    <message>
        <source>Show First</source>
        <translation>Ersten zeigen</translation>
    </message>
    <message>
        <source>Show the first name that can’t be used</source>
        <translation>Den ersten Namen zeigen, der nicht verwendet werden kann</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Renaming…</source>
        <translation>Wird umbenannt …</translation>
    </message>
    <message>
        <source>No name changes</source>
        <translation>Kein Name ändert sich</translation>
    </message>
    <message>
        <source>%1 of %2 get a new name</source>
        <translation>%2, davon %1 mit neuem Namen</translation>
    </message>
</context>
<context>
    <name>tarn::RenameWorkspaceSheet</name>
    <message>
        <source>Rename Workspace</source>
        <translation>Arbeitsbereich umbenennen</translation>
    </message>
    <message>
        <source>Name of the workspace</source>
        <translation>Name des Arbeitsbereichs</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
</context>
<context>
    <name>tarn::RuleEditor</name>
    <message>
        <source>Move Up</source>
        <translation>Nach oben bewegen</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten bewegen</translation>
    </message>
    <message>
        <source>Remove Rule</source>
        <translation>Regel entfernen</translation>
    </message>
    <message>
        <source>Kind of rule</source>
        <translation>Art der Regel</translation>
    </message>
    <message>
        <source>Rule %1 of %2</source>
        <translation>Regel %1 von %2</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Groß- und Kleinschreibung beachten</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Start at</source>
        <translation>Beginnen bei</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>Digits</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>Separator</source>
        <translation>Trennzeichen</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Photo taken</source>
        <translation>Foto aufgenommen</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>Stil</translation>
    </message>
    <message>
        <source>lower case</source>
        <translation>kleinbuchstaben</translation>
    </message>
    <message>
        <source>UPPER CASE</source>
        <translation>GROSSBUCHSTABEN</translation>
    </message>
    <message>
        <source>Title Case</source>
        <translation>Wörter Groß Beginnen</translation>
    </message>
    <message>
        <source>Sentence case</source>
        <translation>Satz groß beginnen</translation>
    </message>
    <message>
        <source>Characters</source>
        <translation>Zeichen</translation>
    </message>
    <message>
        <source>for example -_()</source>
        <translation>zum Beispiel -_()</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Before the name</source>
        <translation>Vor dem Namen</translation>
    </message>
    <message>
        <source>After the name</source>
        <translation>Hinter dem Namen</translation>
    </message>
</context>
<context>
    <name>tarn::SaveWorkspaceSheet</name>
    <message>
        <source>Save Workspace</source>
        <translation>Arbeitsbereich sichern</translation>
    </message>
    <message>
        <source>Name of the workspace</source>
        <translation>Name des Arbeitsbereichs</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>The tab of this window is kept under this name.</source>
        <translation>Der Tab dieses Fensters wird unter diesem Namen gesichert.</translation>
    </message>
    <message>
        <source>The %1 tabs of this window are kept under this name.</source>
        <translation>Die %1 Tabs dieses Fensters werden unter diesem Namen gesichert.</translation>
    </message>
    <message>
        <source>Takes the place of “%1”.</source>
        <translation>Ersetzt „%1“.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
</context>
<context>
    <name>tarn::SearchField</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Clear search</source>
        <translation>Suche löschen</translation>
    </message>
</context>
<context>
    <name>tarn::SearchRow</name>
    <message>
        <source>Where to search</source>
        <translation>Wo gesucht wird</translation>
    </message>
    <message>
        <source>In Home</source>
        <translation>Im Benutzerordner</translation>
    </message>
    <message>
        <source>In “%1”</source>
        <translation>In „%1“</translation>
    </message>
    <message>
        <source>On This Computer</source>
        <translation>Auf diesem Computer</translation>
    </message>
</context>
<context>
    <name>tarn::SearchSection</name>
    <message>
        <source>A search looks in</source>
        <translation>Gesucht wird</translation>
    </message>
    <message>
        <source>the current folder</source>
        <translation>im aktuellen Ordner</translation>
    </message>
    <message>
        <source>the home folder</source>
        <translation>im Benutzerordner</translation>
    </message>
    <message>
        <source>the whole computer</source>
        <translation>auf dem ganzen Computer</translation>
    </message>
    <message>
        <source>Until another place is chosen below the search field, or named in the search.</source>
        <translation>Bis unter dem Suchfeld oder in der Suche ein anderer Ort angegeben wird.</translation>
    </message>
    <message>
        <source>Keys open a quick search from any program</source>
        <translation>Tasten öffnen eine Schnellsuche aus jedem Programm</translation>
    </message>
    <message>
        <source>Tarn goes on without a window for them, until it is quit.</source>
        <translation>Tarn läuft dafür ohne Fenster weiter, bis es beendet wird.</translation>
    </message>
    <message>
        <source>Keys of the quick search</source>
        <translation>Tasten der Schnellsuche</translation>
    </message>
    <message>
        <source>Keys of the quick search: %1</source>
        <translation>Tasten der Schnellsuche: %1</translation>
    </message>
    <message>
        <source>Choose Other Keys…</source>
        <translation>Andere Tasten wählen …</translation>
    </message>
    <message>
        <source>Ask the Desktop for Keys…</source>
        <translation>Den Schreibtisch um Tasten bitten …</translation>
    </message>
</context>
<context>
    <name>tarn::ServerConnection</name>
    <message>
        <source>Servers can’t be connected to on this computer.</source>
        <translation>Auf diesem Computer lassen sich keine Server verbinden.</translation>
    </message>
</context>
<context>
    <name>tarn::SettingsSheet</name>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Sections</source>
        <translation>Abschnitte</translation>
    </message>
    <message>
        <source>Section</source>
        <translation>Abschnitt</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Text in Files</source>
        <translation>Text in Dateien</translation>
    </message>
    <message>
        <source>Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
</context>
<context>
    <name>tarn::ShortcutField</name>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>A shortcut ends with a character, an arrow or the Delete key.</source>
        <translation>Ein Tastenkürzel endet mit einem Zeichen, einem Pfeil oder der Entf-Taste.</translation>
    </message>
    <message>
        <source>Hold Ctrl, Alt or the Super key, so that the key still types.</source>
        <translation>Halte Strg, Alt oder die Super-Taste, damit die Taste weiterhin schreibt.</translation>
    </message>
</context>
<context>
    <name>tarn::ShortcutPortal</name>
    <message>
        <source>The desktop gave it no keys, since that was declined.</source>
        <translation>Der Schreibtisch hat ihr keine Tasten gegeben, da dies abgelehnt wurde.</translation>
    </message>
    <message>
        <source>The desktop gave it no keys.</source>
        <translation>Der Schreibtisch hat ihr keine Tasten gegeben.</translation>
    </message>
    <message>
        <source>The desktop gave it no keys: “%1”</source>
        <translation>Der Schreibtisch hat ihr keine Tasten gegeben: „%1“</translation>
    </message>
    <message>
        <source>The desktop has taken the keys back.</source>
        <translation>Der Schreibtisch hat die Tasten zurückgenommen.</translation>
    </message>
</context>
<context>
    <name>tarn::ShortcutSection</name>
    <message>
        <source>%1 was taken from “%2”.</source>
        <translation>%1 wurde von „%2“ übernommen.</translation>
    </message>
    <message>
        <source>Use Finder Keys</source>
        <translation>Finder-Tasten verwenden</translation>
    </message>
    <message>
        <source>Reset All</source>
        <translation>Alle zurücksetzen</translation>
    </message>
    <message>
        <source>No command fits.</source>
        <translation>Kein Befehl passt.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Find a command or a key</source>
        <translation>Befehl oder Taste suchen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+D goes to the desktop; Duplicates and the Command Palette have no keys.</source>
        <translation>Strg+Umschalt+D geht zum Schreibtisch; „Duplikate“ und die Befehlspalette haben keine Tasten.</translation>
    </message>
    <message>
        <source>The Finder keys are in use.</source>
        <translation>Die Finder-Tasten werden verwendet.</translation>
    </message>
    <message>
        <source>Every command has its own keys again.</source>
        <translation>Jeder Befehl hat wieder seine eigenen Tasten.</translation>
    </message>
    <message>
        <source>Reset the keys of “%1”</source>
        <translation>Tasten von „%1“ zurücksetzen</translation>
    </message>
    <message>
        <source>Keys of “%1”: %2</source>
        <translation>Tasten von „%1“: %2</translation>
    </message>
    <message>
        <source>Keys of “%1”: none</source>
        <translation>Tasten von „%1“: keine</translation>
    </message>
    <message>
        <source>also %1</source>
        <translation>auch %1</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>Take the keys away</source>
        <translation>Tasten wegnehmen</translation>
    </message>
    <message>
        <source>Back to %1</source>
        <translation>Zurück zu %1</translation>
    </message>
</context>
<context>
    <name>tarn::Sidebar</name>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Eject “%1”</source>
        <translation>„%1“ auswerfen</translation>
    </message>
</context>
<context>
    <name>tarn::SidebarActions</name>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Vergessen</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Edit…</source>
        <translation>Bearbeiten …</translation>
    </message>
    <message>
        <source>Remove from Favourites</source>
        <translation>Aus den Favoriten entfernen</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open in New Tab</source>
        <translation>In neuem Tab öffnen</translation>
    </message>
    <message>
        <source>Open in New Window</source>
        <translation>In neuem Fenster öffnen</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Unfold</source>
        <translation>Aufklappen</translation>
    </message>
    <message>
        <source>Fold</source>
        <translation>Zuklappen</translation>
    </message>
    <message>
        <source>Add “%1”</source>
        <translation>„%1“ hinzufügen</translation>
    </message>
    <message>
        <source>Add This Folder</source>
        <translation>Diesen Ordner hinzufügen</translation>
    </message>
    <message>
        <source>New Smart Folder…</source>
        <translation>Neuer intelligenter Ordner …</translation>
    </message>
    <message>
        <source>All Tags</source>
        <translation>Alle Tags</translation>
    </message>
    <message>
        <source>Connect to Server…</source>
        <translation>Mit Server verbinden …</translation>
    </message>
    <message>
        <source>Eject</source>
        <translation>Auswerfen</translation>
    </message>
    <message>
        <source>Empty Trash…</source>
        <translation>Papierkorb leeren …</translation>
    </message>
    <message>
        <source>Delete the smart folder “%1”?</source>
        <translation>Den intelligenten Ordner „%1“ löschen?</translation>
    </message>
    <message>
        <source>The files that it finds stay where they are.</source>
        <translation>Die Dateien, die er findet, bleiben, wo sie sind.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Only folders can be favourites.</source>
        <translation>Nur Ordner können Favoriten sein.</translation>
    </message>
</context>
<context>
    <name>tarn::SidebarDelegate</name>
    <message>
        <source>%1 available</source>
        <translation>%1 verfügbar</translation>
    </message>
</context>
<context>
    <name>tarn::SidebarModel</name>
    <message>
        <source>Home</source>
        <translation>Benutzerordner</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Schreibtisch</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Movies</source>
        <translation>Filme</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Musik</translation>
    </message>
    <message>
        <source>Trash</source>
        <translation>Papierkorb</translation>
    </message>
    <message>
        <source>All Tags</source>
        <translation>Alle Tags</translation>
    </message>
    <message>
        <source>Connect to Server…</source>
        <translation>Mit Server verbinden …</translation>
    </message>
    <message>
        <source>Emptying…</source>
        <translation>Wird geleert …</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <comment>items and size of the Trash</comment>
        <translation>%1 · %2</translation>
    </message>
</context>
<context>
    <name>tarn::SidebarRow</name>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Folded</source>
        <translation>Zugeklappt</translation>
    </message>
    <message>
        <source>Ejecting…</source>
        <translation>Wird ausgeworfen …</translation>
    </message>
    <message>
        <source>Not responding</source>
        <translation>Antwortet nicht</translation>
    </message>
    <message>
        <source>%1 of %2 available</source>
        <translation>%1 von %2 verfügbar</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Smart Folders</source>
        <translation>Intelligente Ordner</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Locations</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
</context>
<context>
    <name>tarn::SidebarTarget</name>
    <message>
        <source>Tag with “%1”</source>
        <translation>Mit „%1“ taggen</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu den Favoriten hinzufügen</translation>
    </message>
</context>
<context>
    <name>tarn::SkeletonRows</name>
    <message>
        <source>Loading…</source>
        <translation>Wird geladen …</translation>
    </message>
</context>
<context>
    <name>tarn::SleepInhibitor</name>
    <message>
        <source>Files are being transferred</source>
        <translation>Dateien werden übertragen</translation>
    </message>
</context>
<context>
    <name>tarn::SnippetLine</name>
    <message>
        <source>Text in image:</source>
        <translation>Text im Bild:</translation>
    </message>
</context>
<context>
    <name>tarn::StartPlaces</name>
    <message>
        <source>%1 available</source>
        <translation>%1 verfügbar</translation>
    </message>
    <message>
        <source>Not responding</source>
        <translation>Antwortet nicht</translation>
    </message>
</context>
<context>
    <name>tarn::StartScreen</name>
    <message>
        <source>Recent Folders</source>
        <translation>Zuletzt benutzte Ordner</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Mediathek</translation>
    </message>
    <message>
        <source>Locations</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Search your files, like “pdfs from last week”</source>
        <translation>Durchsuche deine Dateien, etwa „pdfs from last week“</translation>
    </message>
    <message>
        <source>Search your files</source>
        <translation>Deine Dateien durchsuchen</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Workspaces</source>
        <translation>Arbeitsbereiche</translation>
    </message>
</context>
<context>
    <name>tarn::TabStrip</name>
    <message>
        <source>New Tab</source>
        <translation>Neuer Tab</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Duplicate Tab</source>
        <translation>Tab duplizieren</translation>
    </message>
    <message>
        <source>Move Tab to New Window</source>
        <translation>Tab in neues Fenster bewegen</translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation>Tab schließen</translation>
    </message>
    <message>
        <source>Close Other Tabs</source>
        <translation>Andere Tabs schließen</translation>
    </message>
</context>
<context>
    <name>tarn::TablePreview</name>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Sheets</source>
        <translation>Blätter</translation>
    </message>
    <message>
        <source>More than %1 rows</source>
        <translation>Mehr als %1 Zeilen</translation>
    </message>
    <message>
        <source>The table cannot be read.</source>
        <translation>Die Tabelle kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The workbook is damaged or locked.</source>
        <translation>Die Arbeitsmappe ist beschädigt oder geschützt.</translation>
    </message>
    <message>
        <source>Only the first %1 rows are shown here.</source>
        <translation>Hier stehen nur die ersten %1 Zeilen.</translation>
    </message>
</context>
<context>
    <name>tarn::TagChip</name>
    <message>
        <source>Tag “%1”</source>
        <translation>Tag „%1“</translation>
    </message>
    <message>
        <source>Press Delete to remove it.</source>
        <translation>Mit der Entf-Taste entfernen.</translation>
    </message>
    <message>
        <source>Some of the selected items have it.</source>
        <translation>Einige der ausgewählten Objekte haben ihn.</translation>
    </message>
    <message>
        <source>Remove the tag “%1”</source>
        <translation>Tag „%1“ entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>tarn::TagDotRow</name>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
</context>
<context>
    <name>tarn::TagEditor</name>
    <message>
        <source>Add Tag</source>
        <translation>Tag hinzufügen</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
</context>
<context>
    <name>tarn::TextPreview</name>
    <message>
        <source>Show More</source>
        <translation>Mehr zeigen</translation>
    </message>
    <message>
        <source>The first %1 of %2</source>
        <translation>Die ersten %1 von %2</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>Das Dokument ist beschädigt.</translation>
    </message>
    <message>
        <source>There is nothing in this file.</source>
        <translation>In dieser Datei steht nichts.</translation>
    </message>
</context>
<context>
    <name>tarn::ToastView</name>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>tarn::TransferNotifier</name>
    <message>
        <source>Not Everything Worked</source>
        <translation>Nicht alles hat geklappt</translation>
    </message>
    <message>
        <source>Copying Finished</source>
        <translation>Kopieren beendet</translation>
    </message>
    <message>
        <source>Moving Finished</source>
        <translation>Bewegen beendet</translation>
    </message>
</context>
<context>
    <name>tarn::TransferOutcome</name>
    <message>
        <source>Copied %1 to “%2”</source>
        <translation>%1 nach „%2“ kopiert</translation>
    </message>
    <message>
        <source>Moved %1 to “%2”</source>
        <translation>%1 nach „%2“ bewegt</translation>
    </message>
    <message>
        <source>Moved %1 to the Trash</source>
        <translation>%1 in den Papierkorb gelegt</translation>
    </message>
    <message>
        <source>%1 couldn’t be copied.</source>
        <translation>%1 konnten nicht kopiert werden.</translation>
    </message>
    <message>
        <source>%1 couldn’t be moved.</source>
        <translation>%1 konnten nicht bewegt werden.</translation>
    </message>
</context>
<context>
    <name>tarn::TransferRow</name>
    <message>
        <source>Start Now</source>
        <translation>Jetzt beginnen</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
</context>
<context>
    <name>tarn::TransferText</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Waiting for another transfer between these disks</source>
        <translation>Wartet auf eine andere Übertragung</translation>
    </message>
    <message>
        <source>Preparing…</source>
        <translation>Wird vorbereitet …</translation>
    </message>
    <message>
        <source>Waiting for your answer</source>
        <translation>Wartet auf deine Antwort</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>Finishing writing…</source>
        <translation>Schreiben wird beendet …</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>%1 couldn’t be copied</source>
        <translation>%1 konnten nicht kopiert werden</translation>
    </message>
    <message>
        <source>%1 couldn’t be moved</source>
        <translation>%1 konnten nicht bewegt werden</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>number of items</comment>
        <translation>%1 / %2</translation>
    </message>
</context>
<context>
    <name>tarn::TransfersButton</name>
    <message>
        <source>Transfers</source>
        <translation>Übertragungen</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Ended with failures</source>
        <translation>Mit Fehlern beendet</translation>
    </message>
</context>
<context>
    <name>tarn::TransfersPanel</name>
    <message>
        <source>Nothing is being copied or moved.</source>
        <translation>Es wird nichts kopiert oder bewegt.</translation>
    </message>
    <message>
        <source>Transfers</source>
        <translation>Übertragungen</translation>
    </message>
</context>
<context>
    <name>tarn::TrashBar</name>
    <message>
        <source>Measuring…</source>
        <translation>Wird gemessen …</translation>
    </message>
    <message>
        <source>The Trash is empty</source>
        <translation>Der Papierkorb ist leer</translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Deleting… %1 so far</source>
        <translation>Wird gelöscht … bisher %1</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Empty Trash…</source>
        <translation>Papierkorb leeren …</translation>
    </message>
    <message>
        <source>Empty the Trash?</source>
        <translation>Papierkorb leeren?</translation>
    </message>
    <message>
        <source>%1 will be deleted, %2 in all. This can’t be undone.</source>
        <translation>%1 werden gelöscht, insgesamt %2. Das kann nicht widerrufen werden.</translation>
    </message>
    <message>
        <source>Empty Trash</source>
        <translation>Papierkorb leeren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>tarn::TrashService</name>
    <message>
        <source>Couldn’t empty the Trash. %1 couldn’t be deleted.</source>
        <translation>Der Papierkorb konnte nicht ganz geleert werden. Nicht gelöscht: %1.</translation>
    </message>
    <message>
        <source>Trash emptied</source>
        <translation>Papierkorb geleert</translation>
    </message>
</context>
<context>
    <name>tarn::ViewSection</name>
    <message>
        <source>Show folders as</source>
        <translation>Ordner zeigen als</translation>
    </message>
    <message>
        <source>a grid</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>a list</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>A folder that was changed keeps its own view.</source>
        <translation>Ein Ordner, der geändert wurde, behält seine eigene Darstellung.</translation>
    </message>
    <message>
        <source>Folders first</source>
        <translation>Ordner zuerst</translation>
    </message>
    <message>
        <source>Folders stand before files, whatever the order.</source>
        <translation>Ordner stehen vor Dateien, egal in welcher Reihenfolge.</translation>
    </message>
    <message>
        <source>Show hidden files in new windows</source>
        <translation>Versteckte Dateien in neuen Fenstern zeigen</translation>
    </message>
    <message>
        <source>Show how large folders are</source>
        <translation>Größe von Ordnern zeigen</translation>
    </message>
    <message>
        <source>In the inspector, which counts all that is in them.</source>
        <translation>Im Infobereich, der alles zählt, was in ihnen ist.</translation>
    </message>
</context>
<context>
    <name>tarn::VolumeEjector</name>
    <message>
        <source>Ejected “%1”</source>
        <translation>„%1“ ausgeworfen</translation>
    </message>
</context>
<context>
    <name>tarn::WindowActions</name>
    <message>
        <source>Full Path</source>
        <translation>Ganzer Pfad</translation>
    </message>
    <message>
        <source>Path with ~</source>
        <translation>Pfad mit ~</translation>
    </message>
    <message>
        <source>Quoted for Terminal</source>
        <translation>Für das Terminal maskiert</translation>
    </message>
    <message>
        <source>File URL</source>
        <translation>Datei-URL</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Open Workspace</source>
        <translation>Arbeitsbereich öffnen</translation>
    </message>
</context>
<context>
    <name>tarn::WindowChanges</name>
    <message>
        <source>Closing the last window stops it and removes what is unfinished.</source>
        <translation>Wird das letzte Fenster geschlossen, hört das auf, und Unfertiges wird entfernt.</translation>
    </message>
    <message>
        <source>Stop and Close</source>
        <translation>Stoppen und schließen</translation>
    </message>
    <message>
        <source>Quitting stops it and removes what is unfinished.</source>
        <translation>Beim Beenden hört das auf, und Unfertiges wird entfernt.</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Stoppen und beenden</translation>
    </message>
    <message>
        <source>Files Are Still Being Transferred</source>
        <translation>Es werden noch Dateien übertragen</translation>
    </message>
    <message>
        <source>An Archive Is Still Being Worked On</source>
        <translation>An einem Archiv wird noch gearbeitet</translation>
    </message>
    <message>
        <source>Keep Going</source>
        <translation>Weitermachen</translation>
    </message>
</context>
<context>
    <name>tarn::WindowEdits</name>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>New Folder with Items</source>
        <translation>Neuer Ordner mit Objekten</translation>
    </message>
    <message>
        <source>Unpacking %1…</source>
        <translation>%1 wird entpackt …</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>Extract from “%1”</source>
        <translation>Aus „%1“ entpacken</translation>
    </message>
    <message>
        <source>Renamed “%1” to “%2”</source>
        <translation>„%1“ in „%2“ umbenannt</translation>
    </message>
    <message>
        <source>Renamed %1</source>
        <translation>%1 umbenannt</translation>
    </message>
    <message>
        <source>Created “%1”</source>
        <translation>„%1“ angelegt</translation>
    </message>
    <message>
        <source>Tagged %1 with “%2”</source>
        <translation>%1 mit „%2“ getaggt</translation>
    </message>
    <message>
        <source>Removed the tag “%1” from %2</source>
        <translation>Tag „%1“ entfernt: %2</translation>
    </message>
    <message>
        <source>Removed all tags from %1</source>
        <translation>Alle Tags entfernt: %1</translation>
    </message>
    <message>
        <source>Compressed %1 as “%2”</source>
        <translation>%1 als „%2“ komprimiert</translation>
    </message>
    <message>
        <source>Extracted “%1” as “%2”</source>
        <translation>„%1“ als „%2“ entpackt</translation>
    </message>
    <message>
        <source>Extracted %1 to “%2”</source>
        <translation>%1 nach „%2“ entpackt</translation>
    </message>
    <message>
        <source>Changed permissions of %1</source>
        <translation>Rechte geändert: %1</translation>
    </message>
</context>
<context>
    <name>tarn::WindowMenu</name>
    <message>
        <source>Follow the System</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Sort By</source>
        <translation>Sortieren nach</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
</context>
<context>
    <name>tarn::WindowOperations</name>
    <message>
        <source>Files can’t be copied into the Trash.</source>
        <translation>In den Papierkorb kann nichts kopiert werden.</translation>
    </message>
    <message>
        <source>Undone: %1</source>
        <translation>Widerrufen: %1</translation>
    </message>
    <message>
        <source>There is nothing to undo.</source>
        <translation>Es gibt nichts zu widerrufen.</translation>
    </message>
    <message>
        <source>This change has been undone already.</source>
        <translation>Diese Änderung wurde schon widerrufen.</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>Wiederholt: %1</translation>
    </message>
    <message>
        <source>There is nothing to redo.</source>
        <translation>Es gibt nichts zu wiederholen.</translation>
    </message>
    <message>
        <source>“%1” is in the Trash already.</source>
        <translation>„%1“ liegt schon im Papierkorb.</translation>
    </message>
    <message>
        <source>%1 are in the Trash already.</source>
        <translation>%1 liegen schon im Papierkorb.</translation>
    </message>
    <message>
        <source>Created the folder “%1”</source>
        <translation>Ordner „%1“ angelegt</translation>
    </message>
    <message>
        <source>Moved %1 to “%2”</source>
        <translation>%1 nach „%2“ bewegt</translation>
    </message>
    <message>
        <source>Duplicated %1</source>
        <translation>%1 dupliziert</translation>
    </message>
    <message>
        <source>Renamed “%1” to “%2”</source>
        <translation>„%1“ in „%2“ umbenannt</translation>
    </message>
    <message>
        <source>Put back %1</source>
        <translation>%1 zurückgelegt</translation>
    </message>
</context>
<context>
    <name>tarn::WorkspaceActions</name>
    <message>
        <source>Delete the workspace “%1”?</source>
        <translation>Arbeitsbereich „%1“ löschen?</translation>
    </message>
    <message>
        <source>The folders that its tabs show stay as they are.</source>
        <translation>Die Ordner, die seine Tabs zeigen, bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
</context>
</TS>
