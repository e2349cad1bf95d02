<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>Alle speichern</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
    <message>
        <source>Yes to &amp;All</source>
        <translation>Ja zu &amp;allen</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
    <message>
        <source>N&amp;o to All</source>
        <translation>N&amp;ein zu allen</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Restore Defaults</source>
        <translation>Voreinstellungen</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Close without Saving</source>
        <translation>Schließen ohne zu speichern</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>&amp;Linkadresse kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>QAbstractSpinBox</name>
    <message>
        <source>&amp;Select All</source>
        <translation>Alles &amp;auswählen</translation>
    </message>
    <message>
        <source>&amp;Step up</source>
        <translation>&amp;Größer</translation>
    </message>
    <message>
        <source>Step &amp;down</source>
        <translation>&amp;Kleiner</translation>
    </message>
</context>
<context>
    <name>QComboBox</name>
    <message>
        <source>Open the combo box selection popup</source>
        <translation>Die Auswahlliste öffnen</translation>
    </message>
    <message>
        <source>False</source>
        <translation>Falsch</translation>
    </message>
    <message>
        <source>True</source>
        <translation>Wahr</translation>
    </message>
</context>
<context>
    <name>QMessageBox</name>
    <message>
        <source>Show Details...</source>
        <translation>Einzelheiten zeigen...</translation>
    </message>
    <message>
        <source>Hide Details...</source>
        <translation>Einzelheiten verbergen...</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Nach links blättern</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Nach rechts blättern</translation>
    </message>
</context>
<context>
    <name>QAccessibleActionInterface</name>
    <message>
        <source>Press</source>
        <translation>Drücken</translation>
    </message>
    <message>
        <source>Increase</source>
        <translation>Erhöhen</translation>
    </message>
    <message>
        <source>Decrease</source>
        <translation>Verringern</translation>
    </message>
    <message>
        <source>ShowMenu</source>
        <translation>Menü zeigen</translation>
    </message>
    <message>
        <source>SetFocus</source>
        <translation>Fokus setzen</translation>
    </message>
    <message>
        <source>Toggle</source>
        <translation>Umschalten</translation>
    </message>
    <message>
        <source>Scroll Left</source>
        <translation>Nach links blättern</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Nach rechts blättern</translation>
    </message>
    <message>
        <source>Scroll Up</source>
        <translation>Nach oben blättern</translation>
    </message>
    <message>
        <source>Scroll Down</source>
        <translation>Nach unten blättern</translation>
    </message>
    <message>
        <source>Previous Page</source>
        <translation>Vorige Seite</translation>
    </message>
    <message>
        <source>Next Page</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>Triggers the action</source>
        <translation>Löst die Aktion aus</translation>
    </message>
    <message>
        <source>Increase the value</source>
        <translation>Erhöht den Wert</translation>
    </message>
    <message>
        <source>Decrease the value</source>
        <translation>Verringert den Wert</translation>
    </message>
    <message>
        <source>Shows the menu</source>
        <translation>Zeigt das Menü</translation>
    </message>
    <message>
        <source>Sets the focus</source>
        <translation>Setzt den Fokus</translation>
    </message>
    <message>
        <source>Toggles the state</source>
        <translation>Schaltet den Zustand um</translation>
    </message>
    <message>
        <source>Scrolls to the left</source>
        <translation>Blättert nach links</translation>
    </message>
    <message>
        <source>Scrolls to the right</source>
        <translation>Blättert nach rechts</translation>
    </message>
    <message>
        <source>Scrolls up</source>
        <translation>Blättert nach oben</translation>
    </message>
    <message>
        <source>Scrolls down</source>
        <translation>Blättert nach unten</translation>
    </message>
    <message>
        <source>Goes back a page</source>
        <translation>Geht eine Seite zurück</translation>
    </message>
    <message>
        <source>Goes to the next page</source>
        <translation>Geht zur nächsten Seite</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>Ins</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Druck</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Auf</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Ab</translation>
    </message>
    <message>
        <source>PgUp</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>PgDown</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Meta</source>
        <translation>Meta</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>Num</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>F%1</source>
        <translation>F%1</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Media Play</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Media Stop</source>
        <translation>Wiedergabe anhalten</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Lauter</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Leiser</translation>
    </message>
    <message>
        <source>Volume Mute</source>
        <translation>Stumm</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation>Suchen in:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Alt+Left</source>
        <translation>Alt+Left</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vor</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Vor</translation>
    </message>
    <message>
        <source>Alt+Right</source>
        <translation>Alt+Right</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Zum übergeordneten Ordner</translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation>Alt+Up</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Neuen Ordner anlegen</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Einen neuen Ordner anlegen</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Als Liste zeigen</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Mit Einzelheiten zeigen</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Seitenleiste</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Liste der Orte und Lesezeichen</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Dateityp:</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>Datei&amp;name:</translation>
    </message>
    <message>
        <source>Find Directory</source>
        <translation>Ordner suchen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Auswählen</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>&amp;Verborgene Dateien zeigen</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Neuer Ordner</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>All Files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mein Computer</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Laufwerk</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Verknüpfung</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Show </source>
        <translation>Zeigen </translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Zuletzt besucht</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Der Ordner wurde nicht gefunden.
Bitte prüfen Sie seinen Namen.</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
Die Datei wurde nicht gefunden.
Bitte prüfen Sie ihren Namen.</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ist bereits vorhanden.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>„%1“ ist schreibgeschützt.
Möchten Sie trotzdem löschen?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>Möchten Sie „%1“ wirklich löschen?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>Der Ordner konnte nicht gelöscht werden.</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mein Computer</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Ungültiger Dateiname</translation>
    </message>
    <message>
        <source>%1 TB</source>
        <translation>%1 TB</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>%1 byte(s)</source>
        <translation>%1 Byte</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;Der Name „%1“ kann nicht verwendet werden.&lt;/b&gt;&lt;p&gt;Versuchen Sie einen anderen, mit weniger Zeichen oder ohne Satzzeichen.</translation>
    </message>
</context>
</TS>
