<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CustomAlertWindow</name>
    <message>
        <source>Software update</source>
        <comment>title of the alert that tells there is no newer version</comment>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>OK</source>
        <comment>button that closes the alert</comment>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QuilexHelper</name>
    <message>
        <source>You&apos;re up to date</source>
        <comment>updated</comment>
        <translation>Alles auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>%@ is currently the newest version</source>
        <comment>fmt</comment>
        <translation>%@ ist derzeit die neueste Version</translation>
    </message>
    <message>
        <source>Open Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Videohintergrund öffnen</translation>
    </message>
    <message>
        <source>Close Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Videohintergrund schließen</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>play/pause</comment>
        <translation>Wiedergeben</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>pause play</comment>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Main Window</source>
        <comment>use to show main window</comment>
        <translation>Hauptfenster</translation>
    </message>
    <message>
        <source>Quit</source>
        <comment>quit application</comment>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Screen</source>
        <comment>title</comment>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <comment>Check Update</comment>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Hide Desktop Icon</source>
        <comment>hide desktop icon</comment>
        <translation>Schreibtischsymbole ausblenden</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>Mute desktop video</comment>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Integration</source>
        <comment>make up all monitors into one player</comment>
        <translation>Gemeinsames Bild</translation>
    </message>
    <message>
        <source>Mirror</source>
        <comment>each monitor has same content</comment>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>Single</source>
        <comment>Only play on one monitor</comment>
        <translation>Einzelner Bildschirm</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>pause play</comment>
        <translation>Wiedergeben</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>play</comment>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <comment>version</comment>
        <translation>Version: %@</translation>
    </message>
</context>
<context>
    <name>UpgradeWindow</name>
    <message>
        <source>New version</source>
        <comment>title of the update offer</comment>
        <translation>Neue Version</translation>
    </message>
    <message>
        <source>Close</source>
        <comment>button that closes the update offer</comment>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <comment>headline of the update offer</comment>
        <translation>Eine neue Version ist verfügbar</translation>
    </message>
    <message>
        <source>About the new version</source>
        <comment>accessible name of the text of the update offer</comment>
        <translation>Über die neue Version</translation>
    </message>
    <message>
        <source>Get the update</source>
        <comment>button of the update offer</comment>
        <translation>Update herunterladen</translation>
    </message>
</context>
<context>
    <name>quilex::CardDelegate</name>
    <message>
        <source>File missing</source>
        <translation>Datei fehlt</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Ausgewählt</translation>
    </message>
    <message>
        <source>On the desktop</source>
        <translation>Auf dem Schreibtisch</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopActions</name>
    <message>
        <source>Next video</source>
        <translation>Nächstes Video</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>One picture across all monitors</source>
        <translation>Ein Bild über alle Bildschirme</translation>
    </message>
    <message>
        <source>The same picture on each</source>
        <translation>Dasselbe Bild auf jedem</translation>
    </message>
    <message>
        <source>One monitor only</source>
        <translation>Nur ein Bildschirm</translation>
    </message>
    <message>
        <source>Repeat one video</source>
        <translation>Ein Video wiederholen</translation>
    </message>
    <message>
        <source>Play the list</source>
        <translation>Der Reihe nach</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>Zufällig</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Close wallpaper</source>
        <translation>Hintergrund schließen</translation>
    </message>
    <message>
        <source>Open wallpaper</source>
        <translation>Hintergrund öffnen</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopPanel</name>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Schreibtisch</translation>
    </message>
    <message>
        <source>Arrangement</source>
        <translation>Anordnung</translation>
    </message>
    <message>
        <source>Playing order</source>
        <translation>Reihenfolge</translation>
    </message>
    <message>
        <source>No video is chosen</source>
        <translation>Kein Video ausgewählt</translation>
    </message>
    <message>
        <source>This desktop has no status area for the wallpaper&apos;s menu. Everything in that menu can be done here.</source>
        <translation>Dieser Schreibtisch hat keine Statusleiste für das Menü des Hintergrunds. Alles aus diesem Menü geht auch hier.</translation>
    </message>
    <message>
        <source>The picture stands still because %1.</source>
        <translation>Das Bild steht still (%1).</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryModel</name>
    <message>
        <source>chosen</source>
        <translation>ausgewählt</translation>
    </message>
    <message>
        <source>playing on the desktop</source>
        <translation>läuft auf dem Schreibtisch</translation>
    </message>
    <message>
        <source>paused on the desktop</source>
        <translation>auf dem Schreibtisch angehalten</translation>
    </message>
    <message>
        <source>file missing</source>
        <translation>Datei fehlt</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryView</name>
    <message>
        <source>Videos</source>
        <translation>Videos</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryWindow</name>
    <message>
        <source>Add videos…</source>
        <translation>Videos hinzufügen …</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>Suche leeren</translation>
    </message>
    <message>
        <source>Order of the videos</source>
        <translation>Reihenfolge der Videos</translation>
    </message>
    <message>
        <source>By title</source>
        <translation>Nach Titel</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Neueste zuerst</translation>
    </message>
    <message>
        <source>Longest first</source>
        <translation>Längste zuerst</translation>
    </message>
    <message>
        <source>Largest picture first</source>
        <translation>Größtes Bild zuerst</translation>
    </message>
    <message>
        <source>Size of the covers</source>
        <translation>Größe der Vorschaubilder</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Bibliothek</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>Paste files</source>
        <translation>Dateien einfügen</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>Entfernen rückgängig machen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;Video</source>
        <translation>&amp;Video</translation>
    </message>
    <message>
        <source>Show on the desktop</source>
        <translation>Auf dem Schreibtisch zeigen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Find the file again…</source>
        <translation>Datei wiederfinden …</translation>
    </message>
    <message>
        <source>Remove from the library</source>
        <translation>Aus der Bibliothek entfernen</translation>
    </message>
    <message>
        <source>V&amp;iew</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Larger covers</source>
        <translation>Größere Vorschaubilder</translation>
    </message>
    <message>
        <source>Smaller covers</source>
        <translation>Kleinere Vorschaubilder</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Schreibtisch</translation>
    </message>
    <message>
        <source>&amp;Desktop</source>
        <translation>&amp;Schreibtisch</translation>
    </message>
    <message>
        <source>Looking for videos…</source>
        <translation>Videos werden gesucht …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add videos</source>
        <translation>Videos hinzufügen</translation>
    </message>
    <message>
        <source>Add a folder of videos</source>
        <translation>Ordner mit Videos hinzufügen</translation>
    </message>
    <message>
        <source>Where is the file now?</source>
        <translation>Wo ist die Datei jetzt?</translation>
    </message>
    <message>
        <source>There are no files in the clipboard.</source>
        <translation>In der Zwischenablage sind keine Dateien.</translation>
    </message>
    <message>
        <source>The wallpaper is not running.</source>
        <translation>Der Videohintergrund läuft nicht.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
    <message>
        <source>There is no session bus, so it is not known whether the wallpaper runs.</source>
        <translation>Es gibt keinen Sitzungsbus; ob der Hintergrund läuft, ist daher nicht bekannt.</translation>
    </message>
    <message>
        <source>The library cannot be read</source>
        <translation>Die Bibliothek kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>The library is empty</source>
        <translation>Die Bibliothek ist leer</translation>
    </message>
    <message>
        <source>Drop videos or folders here, or choose “Add videos…”.</source>
        <translation>Ziehen Sie Videos oder Ordner hierher, oder wählen Sie „Videos hinzufügen …“.</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message>
        <source>No title contains “%1”.</source>
        <translation>Kein Titel enthält „%1“.</translation>
    </message>
    <message>
        <source>These loops come with Quilex; double-click one to show it on the desktop. For more, drop videos or a folder of them here, such as your Videos folder.</source>
        <translation>Diese Schleifen kommen mit Quilex; ein Doppelklick zeigt eine auf dem Schreibtisch. Für mehr ziehen Sie Videos oder einen Ordner hierher, zum Beispiel Ihren Ordner „Videos“.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Adding %1 of %2: %3</source>
        <translation>%1 von %2 wird hinzugefügt: %3</translation>
    </message>
    <message>
        <source>No videos were found there.</source>
        <translation>Dort wurden keine Videos gefunden.</translation>
    </message>
    <message>
        <source>%1 is in the library already.</source>
        <translation>%1 ist schon in der Bibliothek.</translation>
    </message>
    <message>
        <source>%1 was found again.</source>
        <translation>%1 wurde wiedergefunden.</translation>
    </message>
    <message>
        <source>Added: %1.</source>
        <translation>Hinzugefügt: %1.</translation>
    </message>
    <message>
        <source>In the library already: %1.</source>
        <translation>Schon in der Bibliothek: %1.</translation>
    </message>
    <message>
        <source>Found again: %1.</source>
        <translation>Wiedergefunden: %1.</translation>
    </message>
    <message>
        <source>Cannot be played: %1.</source>
        <translation>Nicht abspielbar: %1.</translation>
    </message>
    <message>
        <source>The rest was cancelled.</source>
        <translation>Der Rest wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Show why</source>
        <translation>Gründe zeigen</translation>
    </message>
    <message>
        <source>Files that cannot be played</source>
        <translation>Dateien, die nicht abgespielt werden können</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
</context>
<context>
    <name>quilex::MessageBar</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>quilex::MonitorView</name>
    <message>
        <source>Monitors</source>
        <translation>Bildschirme</translation>
    </message>
    <message>
        <source>Monitor %1: %2, %3</source>
        <translation>Bildschirm %1: %2, %3</translation>
    </message>
    <message>
        <source>Click to play on this monitor only</source>
        <translation>Klicken, um nur auf diesem Bildschirm abzuspielen</translation>
    </message>
</context>
<context>
    <name>quilex::WindowLogic</name>
    <message>
        <source>Removed from the library: %1. The files stay where they are.</source>
        <translation>Aus der Bibliothek entfernt: %1. Die Dateien bleiben, wo sie sind.</translation>
    </message>
    <message>
        <source>The wallpaper cannot be started: %1 is missing.</source>
        <translation>Der Hintergrund kann nicht gestartet werden: %1 fehlt.</translation>
    </message>
</context>
</TS>
