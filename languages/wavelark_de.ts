<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AddressBar</name>
    <message>
        <source>Address of a station – paste it and press Enter</source>
        <translation>Adresse eines Senders – einfügen und Eingabetaste drücken</translation>
    </message>
    <message>
        <source>Address of a station</source>
        <translation>Adresse eines Senders</translation>
    </message>
    <message>
        <source>Press Enter to play the station at this address</source>
        <translation>Mit der Eingabetaste wird der Sender dieser Adresse gespielt</translation>
    </message>
    <message>
        <source>Play this address</source>
        <translation>Diese Adresse abspielen</translation>
    </message>
</context>
<context>
    <name>AddressInput</name>
    <message>
        <source>“%1” is not the address of a station. An address looks like http://radio.example:8000/stream.</source>
        <translation>„%1“ ist nicht die Adresse eines Senders. Eine Adresse sieht so aus: http://radio.example:8000/stream.</translation>
    </message>
    <message>
        <source>Type or paste the address of a station first, for example http://radio.example:8000/stream.</source>
        <translation>Geben Sie zuerst die Adresse eines Senders ein, zum Beispiel http://radio.example:8000/stream.</translation>
    </message>
</context>
<context>
    <name>AllSkylarkRadio</name>
    <message>
        <source>%1 – Wavelark</source>
        <translation>%1 – Wavelark</translation>
    </message>
    <message>
        <source>Recording started</source>
        <translation>Aufnahme gestartet</translation>
    </message>
    <message>
        <source>Recording stopped</source>
        <translation>Aufnahme beendet</translation>
    </message>
    <message>
        <source>The language changes when Wavelark starts the next time.</source>
        <translation>Die Sprache wechselt beim nächsten Start von Wavelark.</translation>
    </message>
    <message>
        <source>Recording paused</source>
        <translation>Aufnahme angehalten</translation>
    </message>
    <message>
        <source>Recording resumed</source>
        <translation>Aufnahme läuft weiter</translation>
    </message>
</context>
<context>
    <name>AppStream</name>
    <message>
        <source>Connection canceled</source>
        <translation>Verbindung abgebrochen</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Failed to connect at this time</source>
        <translation>Die Verbindung ist im Moment nicht möglich</translation>
    </message>
    <message>
        <source>The connection to the station was lost</source>
        <translation>Die Verbindung zum Sender ist abgerissen</translation>
    </message>
    <message>
        <source>The station did not come back</source>
        <translation>Der Sender ist nicht zurückgekehrt</translation>
    </message>
    <message>
        <source>Connection lost, reconnecting...</source>
        <translation>Verbindung abgerissen, sie wird neu aufgebaut...</translation>
    </message>
    <message>
        <source>Finished</source>
        <translation>Zu Ende</translation>
    </message>
</context>
<context>
    <name>AtomicFile</name>
    <message>
        <source>Cannot write</source>
        <translation>Kann nicht geschrieben werden:</translation>
    </message>
    <message>
        <source>Cannot save</source>
        <translation>Kann nicht gespeichert werden:</translation>
    </message>
    <message>
        <source>Cannot set aside</source>
        <translation>Kann nicht beiseitegelegt werden:</translation>
    </message>
</context>
<context>
    <name>AudioProvider</name>
    <message>
        <source>no such file</source>
        <translation>keine solche Datei</translation>
    </message>
    <message>
        <source>The audio library &quot;%1&quot; cannot be loaded: %2</source>
        <translation>Die Audiobibliothek „%1“ kann nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be loaded: %2</source>
        <translation>„%1“ kann nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; lacks functions that are needed: %2</source>
        <translation>In „%1“ fehlen benötigte Funktionen: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is version %2.%3; version 2.4 is needed</source>
        <translation>„%1“ hat die Version %2.%3; benötigt wird die Version 2.4</translation>
    </message>
    <message>
        <source>%1
The embedded audio library is used instead.</source>
        <translation>%1
Stattdessen wird die eingebaute Audiobibliothek verwendet.</translation>
    </message>
</context>
<context>
    <name>BASS::CBass</name>
    <message>
        <source>Go to settings and make sure the sound device is set correctly</source>
        <translation>Prüfen Sie in den Einstellungen, ob das richtige Tongerät gewählt ist</translation>
    </message>
    <message>
        <source>Memory error</source>
        <translation>Speicherfehler</translation>
    </message>
    <message>
        <source>Can&apos;t open the file</source>
        <translation>Die Datei lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can&apos;t find a free/valid driver</source>
        <translation>Kein freier oder gültiger Treiber gefunden</translation>
    </message>
    <message>
        <source>The sample buffer was lost</source>
        <translation>Der Samplepuffer ist verloren gegangen</translation>
    </message>
    <message>
        <source>Invalid handle</source>
        <translation>Ungültiges Handle</translation>
    </message>
    <message>
        <source>Unsupported sample format</source>
        <translation>Nicht unterstütztes Sampleformat</translation>
    </message>
    <message>
        <source>Invalid playback position</source>
        <translation>Ungültige Wiedergabeposition</translation>
    </message>
    <message>
        <source>BASS_Init was not successfully called</source>
        <translation>BASS_Init wurde nicht erfolgreich aufgerufen</translation>
    </message>
    <message>
        <source>BASS_Start was not successfully called</source>
        <translation>BASS_Start wurde nicht erfolgreich aufgerufen</translation>
    </message>
    <message>
        <source>Already using the requested device. </source>
        <translation>Das gewünschte Gerät wird bereits verwendet. </translation>
    </message>
    <message>
        <source>Can&apos;t get a free channel</source>
        <translation>Kein freier Kanal verfügbar</translation>
    </message>
    <message>
        <source>An illegal type was specified</source>
        <translation>Ein unzulässiger Typ wurde angegeben</translation>
    </message>
    <message>
        <source>An illegal parameter was specified</source>
        <translation>Ein unzulässiger Parameter wurde angegeben</translation>
    </message>
    <message>
        <source>No 3D support</source>
        <translation>Keine 3D-Unterstützung</translation>
    </message>
    <message>
        <source>No EAX support</source>
        <translation>Keine EAX-Unterstützung</translation>
    </message>
    <message>
        <source>Illegal device number</source>
        <translation>Unzulässige Gerätenummer</translation>
    </message>
    <message>
        <source>Not playing</source>
        <translation>Es wird nichts abgespielt</translation>
    </message>
    <message>
        <source>Illegal sample rate</source>
        <translation>Unzulässige Abtastrate</translation>
    </message>
    <message>
        <source>The stream is not a file stream</source>
        <translation>Der Stream ist kein Dateistream</translation>
    </message>
    <message>
        <source>No hardware voices available</source>
        <translation>Keine Hardwarestimmen verfügbar</translation>
    </message>
    <message>
        <source>The MOD music has no sequence data</source>
        <translation>Die MOD-Musik enthält keine Sequenzdaten</translation>
    </message>
    <message>
        <source>No internet connection could be opened</source>
        <translation>Es konnte keine Internetverbindung aufgebaut werden</translation>
    </message>
    <message>
        <source>Couldn&apos;t create the file</source>
        <translation>Die Datei konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Effects are not available</source>
        <translation>Effekte sind nicht verfügbar</translation>
    </message>
    <message>
        <source>Requested data is not available</source>
        <translation>Die angeforderten Daten sind nicht verfügbar</translation>
    </message>
    <message>
        <source>The channel is a decoding channel</source>
        <translation>Der Kanal ist ein Dekodierkanal</translation>
    </message>
    <message>
        <source>Sufficient DirectX version is not installed</source>
        <translation>Es ist keine ausreichende DirectX-Version installiert</translation>
    </message>
    <message>
        <source>Connection timed out</source>
        <translation>Zeitüberschreitung der Verbindung</translation>
    </message>
    <message>
        <source>Unsupported file format</source>
        <translation>Nicht unterstütztes Dateiformat</translation>
    </message>
    <message>
        <source>Unavailable speaker</source>
        <translation>Lautsprecher nicht verfügbar</translation>
    </message>
    <message>
        <source>Invalid BASS version (used by add-ons)</source>
        <translation>Ungültige BASS-Version (von Erweiterungen verwendet)</translation>
    </message>
    <message>
        <source>Codec is not available/supported</source>
        <translation>Der Codec ist nicht verfügbar oder wird nicht unterstützt</translation>
    </message>
    <message>
        <source>The Windows Media modules (v9 or above) are not installed.</source>
        <translation>Die Windows-Media-Module (ab Version 9) sind nicht installiert.</translation>
    </message>
    <message>
        <source>No codec could be found to support the requested sample format and bitrate.</source>
        <translation>Für das gewünschte Sampleformat und die Bitrate wurde kein Codec gefunden.</translation>
    </message>
    <message>
        <source>No CD fouind in the drive</source>
        <translation>Keine CD im Laufwerk gefunden</translation>
    </message>
    <message>
        <source>Unknown Library Error</source>
        <translation>Unbekannter Bibliotheksfehler</translation>
    </message>
    <message>
        <source>Mono</source>
        <translation>Mono</translation>
    </message>
    <message>
        <source>Stereo</source>
        <translation>Stereo</translation>
    </message>
    <message>
        <source>Failed to initialize sound libraries</source>
        <translation>Die Tonbibliotheken lassen sich nicht starten</translation>
    </message>
</context>
<context>
    <name>BASS::CRecording</name>
    <message>
        <source>Recording failed</source>
        <translation>Aufnahme fehlgeschlagen</translation>
    </message>
    <message>
        <source>Internal Error</source>
        <translation>Interner Fehler</translation>
    </message>
    <message>
        <source>Missing encoder</source>
        <translation>Der Encoder fehlt</translation>
    </message>
    <message>
        <source>Recording failed: Unable to create output file</source>
        <translation>Aufnahme fehlgeschlagen: Die Ausgabedatei lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>Unable to write to disk</source>
        <translation>Auf den Datenträger kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Encoder has stopped working</source>
        <translation>Der Encoder arbeitet nicht mehr</translation>
    </message>
    <message>
        <source>Unknown Error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
</context>
<context>
    <name>BASS::DiskSpace</name>
    <message>
        <source>Only %1 MB are free in %2; recordings leave %3 MB.</source>
        <translation>In %2 sind nur noch %1 MB frei; Aufnahmen lassen %3 MB übrig.</translation>
    </message>
</context>
<context>
    <name>BASS::EncodedSession</name>
    <message>
        <source>What the encoder gives out is not the audio it should be.</source>
        <translation>Was der Encoder liefert, ist nicht der Ton, der es sein sollte.</translation>
    </message>
</context>
<context>
    <name>BASS::FileTagger</name>
    <message>
        <source>Cannot write tags to</source>
        <translation>In diese Datei lassen sich keine Angaben schreiben:</translation>
    </message>
</context>
<context>
    <name>BASS::PlayedStations</name>
    <message>
        <source>The list of played stations cannot be read (%1: %2). It stays as it is, and stations played now are not added to it.</source>
        <translation>Die Liste der gespielten Sender kann nicht gelesen werden (%1: %2). Sie bleibt, wie sie ist, und jetzt gespielte Sender kommen nicht hinzu.</translation>
    </message>
    <message>
        <source>The list of played stations is damaged (%1) and cannot be moved away: %2</source>
        <translation>Die Liste der gespielten Sender ist beschädigt (%1) und lässt sich nicht beiseitelegen: %2</translation>
    </message>
    <message>
        <source>The list of played stations is damaged (%1). It was kept as %2, and a new list was begun.</source>
        <translation>Die Liste der gespielten Sender ist beschädigt (%1). Sie wurde als %2 aufbewahrt, und eine neue Liste wurde begonnen.</translation>
    </message>
    <message>
        <source>The list of played stations could not be saved: %1</source>
        <translation>Die Liste der gespielten Sender konnte nicht gespeichert werden: %1</translation>
    </message>
</context>
<context>
    <name>BASS::Stream</name>
    <message>
        <source>first</source>
        <translation>erster</translation>
    </message>
    <message>
        <source>second</source>
        <translation>zweiter</translation>
    </message>
    <message>
        <source>third</source>
        <translation>dritter</translation>
    </message>
    <message>
        <source>fourth</source>
        <translation>vierter</translation>
    </message>
    <message>
        <source>fifth</source>
        <translation>fünfter</translation>
    </message>
    <message>
        <source>sixth</source>
        <translation>sechster</translation>
    </message>
    <message>
        <source>seventh</source>
        <translation>siebter</translation>
    </message>
    <message>
        <source>eighth</source>
        <translation>achter</translation>
    </message>
    <message>
        <source>ninth</source>
        <translation>neunter</translation>
    </message>
    <message>
        <source>tenth</source>
        <translation>zehnter</translation>
    </message>
    <message>
        <source>Connection canceled</source>
        <translation>Verbindung abgebrochen</translation>
    </message>
    <message>
        <source>Connection succeeded</source>
        <translation>Verbindung hergestellt</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Verbindungsaufbau:</translation>
    </message>
    <message>
        <source>try</source>
        <translation>Versuch</translation>
    </message>
    <message>
        <source>Trying</source>
        <translation>Versuch mit</translation>
    </message>
    <message>
        <source>Connecting with proxy</source>
        <translation>Verbindungsaufbau über Proxy:</translation>
    </message>
    <message>
        <source>Checking online database</source>
        <translation>Die Online-Datenbank wird befragt</translation>
    </message>
    <message>
        <source>Failed to get station url</source>
        <translation>Die Adresse des Senders wurde nicht gefunden</translation>
    </message>
    <message>
        <source>No difference in the database</source>
        <translation>In der Datenbank ist nichts anders</translation>
    </message>
    <message>
        <source>Checking playlist file</source>
        <translation>Die Wiedergabeliste wird geprüft</translation>
    </message>
    <message>
        <source>No data found</source>
        <translation>Keine Daten gefunden</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message>
        <source>No urls found</source>
        <translation>Keine Adressen gefunden</translation>
    </message>
    <message>
        <source>The recording device %1 is not there. Connect it, or choose another one in the settings.</source>
        <translation>Das Aufnahmegerät %1 ist nicht da. Schließen Sie es an, oder wählen Sie in den Einstellungen ein anderes.</translation>
    </message>
</context>
<context>
    <name>BASS::StreamRecorder</name>
    <message>
        <source>The disk is too slow for the stream.</source>
        <translation>Der Datenträger ist zu langsam für den Stream.</translation>
    </message>
</context>
<context>
    <name>CommandLineController</name>
    <message>
        <source>Schedule is already running now</source>
        <translation>Der Zeitplan läuft bereits</translation>
    </message>
    <message>
        <source>The station with the id %1 is not known here. Start it by its address, with /url=.</source>
        <translation>Der Sender mit der Kennung %1 ist hier nicht bekannt. Starten Sie ihn über seine Adresse, mit /url=.</translation>
    </message>
</context>
<context>
    <name>Commands</name>
    <message>
        <source>&amp;Keyboard shortcuts</source>
        <translation>&amp;Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;About Wavelark</source>
        <translation>Ü&amp;ber Wavelark</translation>
    </message>
    <message>
        <source>&amp;Open address…</source>
        <translation>Adresse ö&amp;ffnen…</translation>
    </message>
    <message>
        <source>&amp;Play</source>
        <translation>&amp;Abspielen</translation>
    </message>
    <message>
        <source>Play &amp;last station</source>
        <translation>&amp;Letzten Sender abspielen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Aufnehmen</translation>
    </message>
    <message>
        <source>Record with splitting</source>
        <translation>Nach Titeln getrennt aufnehmen</translation>
    </message>
    <message>
        <source>Record without splitting</source>
        <translation>Ohne Trennung aufnehmen</translation>
    </message>
    <message>
        <source>Start recording single song</source>
        <translation>Einzelnen Titel aufnehmen</translation>
    </message>
    <message>
        <source>&amp;Stop recording</source>
        <translation>Aufnahme &amp;beenden</translation>
    </message>
    <message>
        <source>Open recording folder</source>
        <translation>Aufnahmeordner öffnen</translation>
    </message>
    <message>
        <source>&amp;Mute</source>
        <translation>&amp;Stummschalten</translation>
    </message>
    <message>
        <source>&amp;Louder</source>
        <translation>&amp;Lauter</translation>
    </message>
    <message>
        <source>&amp;Quieter</source>
        <translation>L&amp;eiser</translation>
    </message>
    <message>
        <source>&amp;Filter the list</source>
        <translation>Liste &amp;filtern</translation>
    </message>
    <message>
        <source>&amp;Close the message</source>
        <translation>&amp;Meldung schließen</translation>
    </message>
    <message>
        <source>As the &amp;system</source>
        <translation>Wie das &amp;System</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>Un&amp;mute</source>
        <translation>&amp;Stummschaltung aufheben</translation>
    </message>
    <message>
        <source>&amp;Hide the window</source>
        <translation>Fenster &amp;verbergen</translation>
    </message>
    <message>
        <source>&amp;Settings…</source>
        <translation>&amp;Einstellungen…</translation>
    </message>
    <message>
        <source>Keep last title</source>
        <translation>Letzten Titel behalten</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>Aufnahme anhalten</translation>
    </message>
    <message>
        <source>Resume recording</source>
        <translation>Aufnahme fortsetzen</translation>
    </message>
    <message>
        <source>&amp;Equalizer and sound…</source>
        <translation>E&amp;qualizer und Klang…</translation>
    </message>
    <message>
        <source>&amp;Off</source>
        <translation>&amp;Aus</translation>
    </message>
    <message>
        <source>&amp;Low</source>
        <translation>&amp;Schwach</translation>
    </message>
    <message>
        <source>&amp;Medium</source>
        <translation>&amp;Mittel</translation>
    </message>
    <message>
        <source>&amp;High</source>
        <translation>S&amp;tark</translation>
    </message>
    <message>
        <source>&amp;Custom</source>
        <translation>&amp;Eigene</translation>
    </message>
    <message>
        <source>&amp;All stations equally loud</source>
        <translation>&amp;Alle Sender gleich laut</translation>
    </message>
    <message>
        <source>E&amp;ven out loud and quiet</source>
        <translation>Laut und leise an&amp;gleichen</translation>
    </message>
    <message>
        <source>M&amp;ono</source>
        <translation>Nur ein &amp;Kanal (Mono)</translation>
    </message>
    <message>
        <source>&amp;Swap left and right</source>
        <translation>Links und &amp;rechts tauschen</translation>
    </message>
    <message>
        <source>P&amp;ause</source>
        <translation>An&amp;halten</translation>
    </message>
    <message>
        <source>&amp;Go to live</source>
        <translation>Zum Li&amp;vesignal</translation>
    </message>
    <message>
        <source>&amp;Go on</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>Play the recording &amp;device</source>
        <translation>Aufnahme&amp;gerät abspielen</translation>
    </message>
</context>
<context>
    <name>ConsoleReporter</name>
    <message>
        <source>Recorded: %1</source>
        <translation>Aufgenommen: %1</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
</context>
<context>
    <name>EncodingSettingsPage</name>
    <message>
        <source>Do not encode if &amp;stream type and bitrate are the same</source>
        <translation>Nicht umwandeln, wenn Art und Bitrate des &amp;Streams gleich sind</translation>
    </message>
    <message>
        <source>Rem&amp;ove original file
after encoding</source>
        <translation>&amp;Originaldatei nach dem
Umwandeln löschen</translation>
    </message>
    <message>
        <source>&amp;Encode to:</source>
        <translation>&amp;Umwandeln in:</translation>
    </message>
    <message>
        <source>Do not encode</source>
        <translation>Nicht umwandeln</translation>
    </message>
    <message>
        <source>&amp;Bitrate:</source>
        <translation>&amp;Bitrate:</translation>
    </message>
    <message>
        <source>[Not Set]</source>
        <translation>[Nicht gesetzt]</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>&amp;Mode:</source>
        <translation>&amp;Modus:</translation>
    </message>
    <message>
        <source>Constant bitrate</source>
        <translation>Feste Bitrate</translation>
    </message>
    <message>
        <source>Variable bitrate</source>
        <translation>Veränderliche Bitrate</translation>
    </message>
    <message>
        <source>Average bitrate</source>
        <translation>Mittlere Bitrate</translation>
    </message>
    <message>
        <source>Arg&amp;uments of a program:</source>
        <translation>Angaben für ein &amp;Programm:</translation>
    </message>
    <message>
        <source>The usual ones</source>
        <translation>Die üblichen</translation>
    </message>
    <message>
        <source>For an encoder program that is used where the built-in encoder is not. “-b0” stands for the bitrate.</source>
        <translation>Für ein Encoder-Programm, das statt des eingebauten Encoders benutzt wird. „-b0“ steht für die Bitrate.</translation>
    </message>
    <message>
        <source>Write t&amp;ags into finished files</source>
        <translation>&amp;Tags in fertige Dateien schreiben</translation>
    </message>
    <message>
        <source>Keep a track &amp;list beside each recording</source>
        <translation>Zu jeder Aufnahme eine Titel&amp;liste anlegen</translation>
    </message>
    <message>
        <source>&amp;Format of the track list:</source>
        <translation>&amp;Format der Titelliste:</translation>
    </message>
    <message>
        <source>Playlist (m3u)</source>
        <translation>Wiedergabeliste (m3u)</translation>
    </message>
    <message>
        <source>Cue sheet (cue)</source>
        <translation>Cue-Sheet (cue)</translation>
    </message>
    <message>
        <source>Text (txt)</source>
        <translation>Text (txt)</translation>
    </message>
    <message>
        <source>Dates in the track list</source>
        <translation>Zeitangaben in der Titelliste</translation>
    </message>
    <message>
        <source>A&amp;dd every title to “tracks.txt” in the recording folder</source>
        <translation>Je&amp;den Titel in „tracks.txt“ im Aufnahmeordner eintragen</translation>
    </message>
    <message>
        <source>Code %1</source>
        <translation>Code %1</translation>
    </message>
    <message>
        <source>Quality %1</source>
        <translation>Qualität %1</translation>
    </message>
</context>
<context>
    <name>EqualizerPanel</name>
    <message>
        <source>%1 Hz</source>
        <translation>%1 Hz</translation>
    </message>
    <message>
        <source>%1 kHz</source>
        <translation>%1 kHz</translation>
    </message>
    <message>
        <source>&amp;Equalizer</source>
        <translation>E&amp;qualizer</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Vorgabe</translation>
    </message>
    <message>
        <source>Own</source>
        <translation>Eigene</translation>
    </message>
    <message>
        <source>&amp;Preset:</source>
        <translation>&amp;Vorgabe:</translation>
    </message>
    <message>
        <source>Pre-amp</source>
        <translation>Vorverst.</translation>
    </message>
    <message>
        <source>Pre-amplifier</source>
        <translation>Vorverstärker</translation>
    </message>
    <message>
        <source>%1 decibels</source>
        <translation>%1 Dezibel</translation>
    </message>
</context>
<context>
    <name>EqualizerPreset</name>
    <message>
        <source>Flat</source>
        <translation>Linear</translation>
    </message>
    <message>
        <source>Rock</source>
        <translation>Rock</translation>
    </message>
    <message>
        <source>Pop</source>
        <translation>Pop</translation>
    </message>
    <message>
        <source>Jazz</source>
        <translation>Jazz</translation>
    </message>
    <message>
        <source>Classical</source>
        <translation>Klassik</translation>
    </message>
    <message>
        <source>Dance</source>
        <translation>Tanz</translation>
    </message>
    <message>
        <source>Electronic</source>
        <translation>Elektronisch</translation>
    </message>
    <message>
        <source>More bass</source>
        <translation>Mehr Bässe</translation>
    </message>
    <message>
        <source>More treble</source>
        <translation>Mehr Höhen</translation>
    </message>
    <message>
        <source>Bass and treble</source>
        <translation>Bässe und Höhen</translation>
    </message>
    <message>
        <source>Speech</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Small loudspeakers</source>
        <translation>Kleine Lautsprecher</translation>
    </message>
</context>
<context>
    <name>FolderOpener</name>
    <message>
        <source>The folder %1 does not exist and cannot be made. Choose another recording folder, or give yourself the right to write there.</source>
        <translation>Der Ordner %1 ist nicht vorhanden und kann nicht angelegt werden. Wählen Sie einen anderen Aufnahmeordner, oder geben Sie sich dort Schreibrecht.</translation>
    </message>
    <message>
        <source>No program of this computer shows folders. The folder is %1.</source>
        <translation>Kein Programm auf diesem Rechner zeigt Ordner an. Der Ordner ist %1.</translation>
    </message>
    <message>
        <source>The file %1 is not there any more.</source>
        <translation>Die Datei %1 ist nicht mehr vorhanden.</translation>
    </message>
    <message>
        <source>No program of this computer opens %1.</source>
        <translation>Kein Programm auf diesem Rechner öffnet %1.</translation>
    </message>
</context>
<context>
    <name>HistoryPage</name>
    <message>
        <source>Stations played</source>
        <translation>Gespielte Sender</translation>
    </message>
    <message>
        <source>Filter the stations</source>
        <translation>Sender filtern</translation>
    </message>
    <message>
        <source>Stations that you play appear here.

Paste the address of a station above and press Enter.</source>
        <translation>Hier erscheinen die Sender, die Sie spielen.

Fügen Sie oben die Adresse eines Senders ein, und drücken Sie die Eingabetaste.</translation>
    </message>
    <message>
        <source>No station has all these words.</source>
        <translation>Kein Sender enthält alle diese Wörter.</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Copy the address</source>
        <translation>Adresse kopieren</translation>
    </message>
    <message>
        <source>Remove from the list</source>
        <translation>Aus der Liste entfernen</translation>
    </message>
</context>
<context>
    <name>LanguageManager</name>
    <message>
        <source>English</source>
        <extracomment>The name of the language that the file translates to, in that language.</extracomment>
        <translation>Deutsch</translation>
    </message>
</context>
<context>
    <name>LogModel</name>
    <message>
        <source>%1 Error: %2</source>
        <translation>%1 Fehler: %2</translation>
    </message>
</context>
<context>
    <name>LogPage</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Filter the log</source>
        <translation>Protokoll filtern</translation>
    </message>
    <message>
        <source>Nothing has happened yet.</source>
        <translation>Bisher ist nichts geschehen.</translation>
    </message>
    <message>
        <source>No line of the log has all these words.</source>
        <translation>Keine Zeile des Protokolls enthält alle diese Wörter.</translation>
    </message>
    <message>
        <source>Copy the selected lines</source>
        <translation>Ausgewählte Zeilen kopieren</translation>
    </message>
    <message>
        <source>Copy the whole log</source>
        <translation>Ganzes Protokoll kopieren</translation>
    </message>
    <message>
        <source>Clear the log</source>
        <translation>Protokoll leeren</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;Station</source>
        <translation>&amp;Sender</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>&amp;Aufnahme</translation>
    </message>
    <message>
        <source>S&amp;ound</source>
        <translation>&amp;Ton</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>A&amp;nsicht</translation>
    </message>
    <message>
        <source>&amp;Theme</source>
        <translation>F&amp;arben</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Sprache</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Extras</translation>
    </message>
    <message>
        <source>&amp;Dynamic boost</source>
        <translation>&amp;Dynamikverstärkung</translation>
    </message>
</context>
<context>
    <name>MessageBar</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the message</source>
        <translation>Meldung schließen</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
</context>
<context>
    <name>NavigationList</name>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>PeakMeter</name>
    <message>
        <source>Level</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
</context>
<context>
    <name>PlayController</name>
    <message>
        <source>%1 is being recorded. Playing another station ends the recording; what has been recorded is kept.</source>
        <translation>%1 wird aufgenommen. Ein anderer Sender beendet die Aufnahme; was aufgenommen wurde, bleibt erhalten.</translation>
    </message>
    <message>
        <source>Stop recording and play</source>
        <translation>Aufnahme beenden und abspielen</translation>
    </message>
    <message>
        <source>No station has been played yet. Type or paste the address of one above, and press Enter.</source>
        <translation>Es wurde noch kein Sender gespielt. Geben Sie oben die Adresse eines Senders ein, und drücken Sie die Eingabetaste.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Recording device</source>
        <translation>Aufnahmegerät</translation>
    </message>
</context>
<context>
    <name>PlayedStationsModel</name>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
</context>
<context>
    <name>PlayerBar</name>
    <message>
        <source>The Down key shows the ways to record</source>
        <translation>Die Pfeiltaste nach unten zeigt die Arten der Aufnahme</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Nothing is playing</source>
        <translation>Es wird nichts abgespielt</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>%1 (Space)</source>
        <translation>%1 (Leertaste)</translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation>Aufnahme beenden</translation>
    </message>
    <message>
        <source>Record with splitting</source>
        <translation>Nach Titeln getrennt aufnehmen</translation>
    </message>
    <message>
        <source>%1 (Ctrl+R)</source>
        <translation>%1 (Strg+R)</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>Stummschaltung aufheben</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stummschalten</translation>
    </message>
    <message>
        <source>%1 (Ctrl+M)</source>
        <translation>%1 (Strg+M)</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>Stummgeschaltet</translation>
    </message>
    <message>
        <source>Record without splitting</source>
        <translation>Ohne Teilen aufnehmen</translation>
    </message>
    <message>
        <source>%1 behind live</source>
        <translation>%1 hinter live</translation>
    </message>
</context>
<context>
    <name>PlayingSettingsPage</name>
    <message>
        <source>O&amp;utput device:</source>
        <translation>Ausgabege&amp;rät:</translation>
    </message>
    <message>
        <source>Recording de&amp;vice:</source>
        <translation>Aufnah&amp;megerät:</translation>
    </message>
    <message>
        <source>Fade &amp;in:</source>
        <translation>&amp;Einblenden:</translation>
    </message>
    <message>
        <source>Fade &amp;out:</source>
        <translation>A&amp;usblenden:</translation>
    </message>
    <message>
        <source> s</source>
        <comment>seconds</comment>
        <translation> s</translation>
    </message>
    <message>
        <source>&amp;Buffer:</source>
        <translation>&amp;Puffer:</translation>
    </message>
    <message>
        <source> ms</source>
        <comment>milliseconds</comment>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Attempts to connect:</source>
        <translation>&amp;Verbindungsversuche:</translation>
    </message>
    <message>
        <source>&amp;Wait for a lost station:</source>
        <translation>Auf einen verlorenen Sender war&amp;ten:</translation>
    </message>
    <message>
        <source> min</source>
        <comment>minutes</comment>
        <translation> min</translation>
    </message>
    <message>
        <source>A larger buffer bridges longer gaps of the network. A station that is being recorded is waited for without a limit. Changes are in force from the next station on.</source>
        <translation>Ein größerer Puffer überbrückt längere Aussetzer des Netzes. Auf einen Sender, der aufgenommen wird, wird unbegrenzt gewartet. Änderungen gelten ab dem nächsten Sender.</translation>
    </message>
    <message>
        <source>&amp;Meter:</source>
        <translation>An&amp;zeige:</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>%1 (not there now)</source>
        <translation>%1 (jetzt nicht da)</translation>
    </message>
</context>
<context>
    <name>PreferenceFaults</name>
    <message>
        <source>A file name pattern is empty. Example: %1</source>
        <translation>Ein Muster für Dateinamen ist leer. Beispiel: %1</translation>
    </message>
    <message>
        <source>The proxy needs the name of its server.</source>
        <translation>Für den Proxy fehlt der Name des Servers.</translation>
    </message>
    <message>
        <source>The proxy&apos;s server is a name only, without “http://”, a port or blanks.</source>
        <translation>Der Server des Proxys ist nur ein Name, ohne „http://“, Port oder Leerzeichen.</translation>
    </message>
    <message>
        <source>The proxy&apos;s port is a number from 1 to 65535.</source>
        <translation>Der Port des Proxys ist eine Zahl von 1 bis 65535.</translation>
    </message>
</context>
<context>
    <name>ProgramData</name>
    <message>
        <source>%1 is not deleted: it is not a data folder of this program.</source>
        <translation>%1 wird nicht gelöscht: Es ist kein Datenordner dieses Programms.</translation>
    </message>
    <message>
        <source>%1 cannot be deleted.</source>
        <translation>%1 kann nicht gelöscht werden.</translation>
    </message>
</context>
<context>
    <name>QT_EXT::QHttpExt</name>
    <message>
        <source>Canceled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Too many redirects</source>
        <translation>Zu viele Weiterleitungen</translation>
    </message>
</context>
<context>
    <name>RecordController</name>
    <message>
        <source>What was recorded before is kept. Check that the recording folder %1 can be written and has room, then try again.</source>
        <translation>Was bis dahin aufgenommen wurde, bleibt erhalten. Prüfen Sie, ob in den Aufnahmeordner %1 geschrieben werden kann und ob er Platz hat, und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Dynamic boost can sometimes distort recordings when encoding</source>
        <translation>Die dynamische Verstärkung kann Aufnahmen beim Umwandeln verzerren</translation>
    </message>
    <message>
        <source>Do you wish to temporarily turn off dynamic boost?</source>
        <translation>Möchten Sie die dynamische Verstärkung vorübergehend ausschalten?</translation>
    </message>
    <message>
        <source>The recording buffer does not hold the last title from its beginning. The buffer is switched on, and made larger, in the settings of recordings.</source>
        <translation>Der Aufnahmepuffer enthält den letzten Titel nicht von Anfang an. Eingeschaltet und vergrößert wird der Puffer in den Einstellungen der Aufnahme.</translation>
    </message>
</context>
<context>
    <name>RecordingFilePattern</name>
    <message>
        <source>Station name</source>
        <translation>Sendername</translation>
    </message>
    <message>
        <source>Country</source>
        <translation>Land</translation>
    </message>
    <message>
        <source>Country state</source>
        <translation>Bundesland</translation>
    </message>
    <message>
        <source>City</source>
        <translation>Stadt</translation>
    </message>
    <message>
        <source>Scheduled task name</source>
        <translation>Name der geplanten Aufgabe</translation>
    </message>
    <message>
        <source>Date Format</source>
        <translation>Datumsformat</translation>
    </message>
    <message>
        <source>Time Format</source>
        <translation>Zeitformat</translation>
    </message>
    <message>
        <source>Track or Title</source>
        <translation>Titel oder Sender</translation>
    </message>
    <message>
        <source>Song/Track artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Song/Track title</source>
        <translation>Titel des Stücks</translation>
    </message>
    <message>
        <source>Any comment found</source>
        <translation>Gefundener Kommentar</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>File Pattern</source>
        <translation>Dateimuster</translation>
    </message>
    <message>
        <source>File Pattern (Splitting)</source>
        <translation>Dateimuster (mit Teilen)</translation>
    </message>
    <message>
        <source>File Pattern (No Splitting)</source>
        <translation>Dateimuster (ohne Teilen)</translation>
    </message>
    <message>
        <source>File &amp;Pattern (Splitting):</source>
        <translation>Datei&amp;muster (mit Teilen):</translation>
    </message>
    <message>
        <source>File &amp;Pattern (No Splitting):</source>
        <translation>Datei&amp;muster (ohne Teilen):</translation>
    </message>
    <message>
        <source>Test Output</source>
        <translation>Probeausgabe</translation>
    </message>
    <message>
        <source>&amp;Copy from presets:</source>
        <translation>Aus &amp;Vorlagen übernehmen:</translation>
    </message>
    <message>
        <source>&amp;Date Format:</source>
        <translation>&amp;Datumsformat:</translation>
    </message>
    <message>
        <source>&amp;Time Format:</source>
        <translation>&amp;Zeitformat:</translation>
    </message>
    <message>
        <source>Copy from &amp;settings</source>
        <translation>Aus den &amp;Einstellungen übernehmen</translation>
    </message>
    <message>
        <source>Placeholders</source>
        <translation>Platzhalter</translation>
    </message>
    <message>
        <source>&amp;Insert at the cursor</source>
        <translation>An der Schreibmarke e&amp;infügen</translation>
    </message>
    <message>
        <source>Harbour Jazz</source>
        <translation>Hafenjazz</translation>
    </message>
    <message>
        <source>Germany</source>
        <translation>Deutschland</translation>
    </message>
    <message>
        <source>Hamburg</source>
        <translation>Hamburg</translation>
    </message>
    <message>
        <source>Evening</source>
        <translation>Abend</translation>
    </message>
    <message>
        <source>The Lamplighters - Slow Boat</source>
        <translation>The Lamplighters - Slow Boat</translation>
    </message>
    <message>
        <source>live</source>
        <translation>live</translation>
    </message>
</context>
<context>
    <name>RecordingSettingsPage</name>
    <message>
        <source>Recording folder</source>
        <translation>Aufnahmeordner</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>&amp;Durchsuchen…</translation>
    </message>
    <message>
        <source>Choose the recording folder</source>
        <translation>Aufnahmeordner wählen</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>File names, one file per track</source>
        <translation>Dateinamen, eine Datei je Titel</translation>
    </message>
    <message>
        <source>File names, one file in all</source>
        <translation>Dateinamen, eine Datei insgesamt</translation>
    </message>
    <message>
        <source>Edit…</source>
        <translation>Bearbeiten…</translation>
    </message>
    <message>
        <source>Edit: %1</source>
        <translation>Bearbeiten: %1</translation>
    </message>
    <message>
        <source>File names, one file per trac&amp;k:</source>
        <translation>Dateinamen, eine Datei je &amp;Titel:</translation>
    </message>
    <message>
        <source>File names, one file in &amp;all:</source>
        <translation>Dateinamen, eine Datei insge&amp;samt:</translation>
    </message>
    <message>
        <source>The record b&amp;utton makes:</source>
        <translation>Der Aufnahme&amp;knopf macht:</translation>
    </message>
    <message>
        <source>One file per track</source>
        <translation>Eine Datei je Titel</translation>
    </message>
    <message>
        <source>One file in all</source>
        <translation>Eine Datei insgesamt</translation>
    </message>
    <message>
        <source>One file in all, part&amp;s of:</source>
        <translation>Eine Datei insgesamt, Tei&amp;le von:</translation>
    </message>
    <message>
        <source> min</source>
        <comment>minutes</comment>
        <translation> min</translation>
    </message>
    <message>
        <source>Not parted</source>
        <translation>Nicht geteilt</translation>
    </message>
    <message>
        <source>&amp;Delay of cuts:</source>
        <translation>&amp;Verzögerung der Schnitte:</translation>
    </message>
    <message>
        <source> ms</source>
        <comment>milliseconds</comment>
        <translation> ms</translation>
    </message>
    <message>
        <source>For stations that send their titles too early; below zero: too late.</source>
        <translation>Für Sender, die ihre Titel zu früh senden; unter null: zu spät.</translation>
    </message>
    <message>
        <source>&amp;Overwrite same file</source>
        <translation>Gleiche Datei übe&amp;rschreiben</translation>
    </message>
    <message>
        <source>Cut MP3 to the b&amp;yte, without what a clean start needs</source>
        <translation>MP3 auf das B&amp;yte genau schneiden, ohne was ein sauberer Anfang braucht</translation>
    </message>
    <message>
        <source>Write AAC streams as M&amp;4A files</source>
        <translation>AAC-Streams als M&amp;4A-Dateien schreiben</translation>
    </message>
    <message>
        <source>Sho&amp;w a pause button while recording</source>
        <translation>Während der Aufnahme einen &amp;Pausenknopf zeigen</translation>
    </message>
    <message>
        <source>Do not use
recording buffer</source>
        <translation>Aufnahmepuffer
nicht benutzen</translation>
    </message>
    <message>
        <source>Buffer size (MB)</source>
        <translation>Puffergröße (MB)</translation>
    </message>
    <message>
        <source>A recording buffer means the recording will not start from the point the recording was started</source>
        <translation>Mit einem Aufnahmepuffer beginnt die Aufnahme nicht erst an der Stelle, an der sie gestartet wurde</translation>
    </message>
</context>
<context>
    <name>RecordingStrip</name>
    <message>
        <source>Recording starts with the first data…</source>
        <translation>Die Aufnahme beginnt mit den ersten Daten…</translation>
    </message>
    <message>
        <source>Recording: %1</source>
        <translation>Aufnahme: %1</translation>
    </message>
    <message>
        <source>Recording paused: %1</source>
        <translation>Aufnahme angehalten: %1</translation>
    </message>
</context>
<context>
    <name>RecordingsPage</name>
    <message>
        <source>Recordings</source>
        <translation>Aufnahmen</translation>
    </message>
    <message>
        <source>Filter the recordings</source>
        <translation>Aufnahmen filtern</translation>
    </message>
    <message>
        <source>Your recordings appear here.

Play a station, then press the red button or Ctrl+R.</source>
        <translation>Hier erscheinen Ihre Aufnahmen.

Spielen Sie einen Sender, und drücken Sie dann den roten Knopf oder Strg+R.</translation>
    </message>
    <message>
        <source>No recording has all these words.</source>
        <translation>Keine Aufnahme enthält alle diese Wörter.</translation>
    </message>
    <message>
        <source>Open the folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Open the file</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Copy the file&apos;s path</source>
        <translation>Pfad der Datei kopieren</translation>
    </message>
    <message>
        <source>Read the folder again</source>
        <translation>Ordner neu einlesen</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Cannot use the folder %1</source>
        <translation>Der Ordner %1 kann nicht verwendet werden</translation>
    </message>
    <message>
        <source>Cannot create the folder %1</source>
        <translation>Der Ordner %1 kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Cannot write to the folder %1</source>
        <translation>In den Ordner %1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>The settings file %1 was damaged. It was kept as %2, and what could be read of it is still in force.</source>
        <translation>Die Einstellungsdatei %1 war beschädigt. Sie wurde als %2 aufbewahrt; was davon lesbar war, gilt weiterhin.</translation>
    </message>
    <message>
        <source>Settings cannot be saved in %1 (%2). Changes are kept until the program ends.</source>
        <translation>Einstellungen können nicht in %1 gespeichert werden (%2). Änderungen gelten bis zum Ende des Programms.</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Groups of settings</source>
        <translation>Gruppen von Einstellungen</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>All&amp;gemein</translation>
    </message>
    <message>
        <source>&amp;Tray</source>
        <translation>&amp;Infobereich</translation>
    </message>
    <message>
        <source>&amp;Playing</source>
        <translation>&amp;Wiedergabe</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>&amp;Aufnahme</translation>
    </message>
    <message>
        <source>&amp;Network</source>
        <translation>&amp;Netzwerk</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Sprache:</translation>
    </message>
    <message>
        <source>As the system</source>
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
        <source>&amp;Ask before quitting while a recording runs</source>
        <translation>Vor dem &amp;Beenden fragen, solange eine Aufnahme läuft</translation>
    </message>
    <message>
        <source>Keep a log &amp;file</source>
        <translation>&amp;Protokolldatei führen</translation>
    </message>
    <message>
        <source>&amp;Show an icon in the tray</source>
        <translation>&amp;Symbol im Infobereich zeigen</translation>
    </message>
    <message>
        <source>Also while the &amp;window is shown</source>
        <translation>Auch wenn das &amp;Fenster zu sehen ist</translation>
    </message>
    <message>
        <source>&amp;Closing the window hides it in the tray</source>
        <translation>S&amp;chließen verbirgt das Fenster im Infobereich</translation>
    </message>
    <message>
        <source>&amp;Minimising hides it in the tray</source>
        <translation>&amp;Minimieren verbirgt das Fenster im Infobereich</translation>
    </message>
    <message>
        <source>The middle mouse &amp;button mutes</source>
        <translation>Die mittlere Maus&amp;taste schaltet stumm</translation>
    </message>
    <message>
        <source>&amp;Use a proxy</source>
        <translation>Einen &amp;Proxy verwenden</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>P&amp;ort:</source>
        <translation>P&amp;ort:</translation>
    </message>
    <message>
        <source>Us&amp;er name:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>The password is kept as it is in the settings file. Without a proxy of its own Wavelark uses the one of the system.</source>
        <translation>Das Kennwort steht unverschlüsselt in der Einstellungsdatei. Ohne eigenen Proxy verwendet Wavelark den des Systems.</translation>
    </message>
    <message>
        <source>Some of it is in force when Wavelark starts the next time.</source>
        <translation>Ein Teil davon gilt ab dem nächsten Start von Wavelark.</translation>
    </message>
    <message>
        <source>The&amp;me:</source>
        <translation>&amp;Farben:</translation>
    </message>
    <message>
        <source>Play the last &amp;station when Wavelark starts</source>
        <translation>Beim Start den &amp;letzten Sender abspielen</translation>
    </message>
    <message>
        <source>Let several &amp;instances run side by side</source>
        <translation>&amp;Mehrere Instanzen nebeneinander zulassen</translation>
    </message>
    <message>
        <source>Start &amp;hidden in the tray</source>
        <translation>&amp;Verborgen im Infobereich starten</translation>
    </message>
    <message>
        <source>The too&amp;l tip tells station and title</source>
        <translation>Die &amp;Kurzinfo nennt Sender und Titel</translation>
    </message>
    <message>
        <source>Sh&amp;ow messages while the window is hidden</source>
        <translation>Mel&amp;dungen zeigen, wenn das Fenster verborgen ist</translation>
    </message>
    <message>
        <source>Encoding</source>
        <translation>Umwandlung</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Play or stop, outside of text fields</source>
        <translation>Abspielen oder anhalten, außerhalb von Textfeldern</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Open the current row of a list</source>
        <translation>Aktuelle Zeile einer Liste öffnen</translation>
    </message>
    <message>
        <source>Remove the current row from the played stations</source>
        <translation>Aktuelle Zeile aus den gespielten Sendern entfernen</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Pfeil nach unten</translation>
    </message>
    <message>
        <source>On the record button: show the ways to record</source>
        <translation>Auf dem Aufnahmeknopf: die Arten der Aufnahme zeigen</translation>
    </message>
</context>
<context>
    <name>SoundDialog</name>
    <message>
        <source>&amp;Only for this station</source>
        <translation>&amp;Nur für diesen Sender</translation>
    </message>
    <message>
        <source>Equalizer and sound</source>
        <translation>Equalizer und Klang</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>Loudness</source>
        <translation>Lautheit</translation>
    </message>
    <message>
        <source>&amp;All stations equally loud</source>
        <translation>&amp;Alle Sender gleich laut</translation>
    </message>
    <message>
        <source>E&amp;ven out loud and quiet</source>
        <translation>&amp;Laut und leise angleichen</translation>
    </message>
    <message>
        <source>Dynamic boost</source>
        <translation>Dynamikverstärkung</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Schwach</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Stark</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Eigene</translation>
    </message>
    <message>
        <source>&amp;Dynamic boost:</source>
        <translation>&amp;Dynamikverstärkung:</translation>
    </message>
    <message>
        <source>Held back a&amp;bove:</source>
        <translation>Ge&amp;bremst ab:</translation>
    </message>
    <message>
        <source> dB</source>
        <translation> dB</translation>
    </message>
    <message>
        <source>&amp;How strongly:</source>
        <translation>W&amp;ie stark:</translation>
    </message>
    <message>
        <source> to 1</source>
        <translation> zu 1</translation>
    </message>
    <message>
        <source>Made &amp;louder by:</source>
        <translation>An&amp;gehoben um:</translation>
    </message>
    <message>
        <source>Stereo</source>
        <translation>Stereo</translation>
    </message>
    <message>
        <source>Stereo &amp;width:</source>
        <translation>Stereo&amp;weite:</translation>
    </message>
    <message>
        <source>Stereo width</source>
        <translation>Stereoweite</translation>
    </message>
    <message>
        <source>&amp;Mono</source>
        <translation>&amp;Mono</translation>
    </message>
    <message>
        <source>&amp;Swap left and right</source>
        <translation>Links und &amp;rechts tauschen</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>Startup</name>
    <message>
        <source>Nothing was removed: the question before it needs a display.</source>
        <translation>Es wurde nichts entfernt: Für die Frage davor ist eine Anzeige nötig.</translation>
    </message>
    <message>
        <source>Do you want to remove your settings and data?</source>
        <translation>Möchten Sie Ihre Einstellungen und Daten entfernen?</translation>
    </message>
    <message>
        <source>Not everything was removed: %1</source>
        <translation>Nicht alles wurde entfernt: %1</translation>
    </message>
    <message>
        <source>Computer shutdown will start imminently. Do you wish to continue?</source>
        <translation>Der Computer wird gleich heruntergefahren. Möchten Sie fortfahren?</translation>
    </message>
    <message>
        <source>The system did not do what was planned for the end: %1.</source>
        <translation>Das System hat nicht getan, was für das Ende vorgesehen war: %1.</translation>
    </message>
</context>
<context>
    <name>StateText</name>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindung wird aufgebaut…</translation>
    </message>
    <message>
        <source>Playing</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Waiting for data…</source>
        <translation>Warten auf Daten…</translation>
    </message>
    <message>
        <source>Connection lost. Reconnecting…</source>
        <translation>Verbindung abgerissen. Sie wird neu aufgebaut…</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>Mono</source>
        <translation>Mono</translation>
    </message>
    <message>
        <source>Stereo</source>
        <translation>Stereo</translation>
    </message>
    <message>
        <source>%1 kHz</source>
        <translation>%1 kHz</translation>
    </message>
    <message>
        <source>1 track</source>
        <translation>1 Titel</translation>
    </message>
    <message numerus="yes">
        <source>%n tracks</source>
        <translation>
            <numerusform>%n Titel</numerusform>
            <numerusform>%n Titel</numerusform>
        </translation>
    </message>
    <message>
        <source>room for %1 days</source>
        <translation>Platz für %1 Tage</translation>
    </message>
    <message>
        <source>room for %1</source>
        <translation>Platz für %1</translation>
    </message>
</context>
<context>
    <name>TrayIcon</name>
    <message>
        <source>&amp;Hide the window</source>
        <translation>Fenster &amp;verbergen</translation>
    </message>
    <message>
        <source>&amp;Show the window</source>
        <translation>Fenster &amp;zeigen</translation>
    </message>
</context>
<context>
    <name>WindowDialogs</name>
    <message>
        <source>A recording is running. Stop it and quit?</source>
        <translation>Es läuft eine Aufnahme. Soll sie beendet und das Programm geschlossen werden?</translation>
    </message>
    <message>
        <source>Stop and &amp;quit</source>
        <translation>Aufnahme beenden und &amp;schließen</translation>
    </message>
    <message>
        <source>&amp;Keep recording</source>
        <translation>&amp;Weiter aufnehmen</translation>
    </message>
    <message>
        <source>What has been recorded is kept.</source>
        <translation>Was aufgenommen wurde, bleibt erhalten.</translation>
    </message>
    <message>
        <source>About Wavelark</source>
        <translation>Über Wavelark</translation>
    </message>
    <message>
        <source>&lt;b&gt;Wavelark %1&lt;/b&gt;&lt;p&gt;Listen to internet radio and record it, one file per track.&lt;/p&gt;</source>
        <translation>&lt;b&gt;Wavelark %1&lt;/b&gt;&lt;p&gt;Internetradio hören und aufnehmen, jeden Titel in einer eigenen Datei.&lt;/p&gt;</translation>
    </message>
</context>
</TS>
