<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>glyma::DesktopProgram</name>
    <message>
        <source>Glyma is running</source>
        <translation>Glyma läuft</translation>
    </message>
    <message>
        <source>This desktop has no tray that could show its icon. Start Glyma again to open its preferences.</source>
        <translation>Diese Arbeitsumgebung hat keinen Systemabschnitt für das Symbol. Starten Sie Glyma noch einmal, um die Einstellungen zu öffnen.</translation>
    </message>
</context>
<context>
    <name>glyma::Message</name>
    <message>
        <source>the connection to the X server was lost</source>
        <translation>die Verbindung zum X-Server ist abgebrochen</translation>
    </message>
    <message>
        <source>Not in library</source>
        <translation>Nicht in der Bibliothek</translation>
    </message>
    <message>
        <source>Enabled in picker</source>
        <translation>In der Auswahl aktiviert</translation>
    </message>
    <message>
        <source>Disabled in picker</source>
        <translation>In der Auswahl deaktiviert</translation>
    </message>
    <message>
        <source>Block</source>
        <translation>Block</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Stichwörter</translation>
    </message>
    <message>
        <source>UTF-8</source>
        <translation>UTF-8</translation>
    </message>
    <message>
        <source>Skin tone</source>
        <translation>Hautton</translation>
    </message>
    <message>
        <source>supported</source>
        <translation>unterstützt</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Verwendung</translation>
    </message>
    <message>
        <source>Popularity</source>
        <translation>Beliebtheit</translation>
    </message>
    <message>
        <source>#%1 of the most-used emoji</source>
        <translation>Platz %1 der meistverwendeten Emojis</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>light skin tone</source>
        <translation>heller Hautton</translation>
    </message>
    <message>
        <source>medium-light skin tone</source>
        <translation>mittelheller Hautton</translation>
    </message>
    <message>
        <source>medium skin tone</source>
        <translation>mittlerer Hautton</translation>
    </message>
    <message>
        <source>medium-dark skin tone</source>
        <translation>mitteldunkler Hautton</translation>
    </message>
    <message>
        <source>dark skin tone</source>
        <translation>dunkler Hautton</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tabulator</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Eingabe (Ziffernblock)</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Pfeil links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Pfeil rechts</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Pfeil ab</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Pfeil auf</translation>
    </message>
    <message>
        <source>there is no session bus, through which applications are asked for their text</source>
        <translation>es gibt keinen Sitzungsbus, über den Anwendungen nach ihrem Text gefragt werden</translation>
    </message>
    <message>
        <source>Start the desktop session through dbus-run-session, or install dbus-user-session.</source>
        <translation>Starten Sie die Sitzung mit dbus-run-session oder installieren Sie dbus-user-session.</translation>
    </message>
    <message>
        <source>the accessibility bus answers and is switched on</source>
        <translation>der Barrierefreiheits-Bus antwortet und ist eingeschaltet</translation>
    </message>
    <message>
        <source>the accessibility bus is switched off</source>
        <translation>der Barrierefreiheits-Bus ist ausgeschaltet</translation>
    </message>
    <message>
        <source>Glyma switches it on when it starts; its preferences do so on the page Permissions.</source>
        <translation>Glyma schaltet ihn beim Start ein; in den Einstellungen geht das auf der Seite „Berechtigungen“.</translation>
    </message>
    <message>
        <source>the accessibility bus does not answer: %1</source>
        <translation>der Barrierefreiheits-Bus antwortet nicht: %1</translation>
    </message>
    <message>
        <source>Install the package at-spi2-core, then log out and in again.</source>
        <translation>Installieren Sie das Paket at-spi2-core, melden Sie sich dann ab und wieder an.</translation>
    </message>
    <message>
        <source>Start the X server without &quot;-extension %1&quot;, or use a current X.Org server.</source>
        <translation>Starten Sie den X-Server ohne „-extension %1“ oder verwenden Sie einen aktuellen X.Org-Server.</translation>
    </message>
    <message>
        <source>there is no X display: DISPLAY is not set</source>
        <translation>es gibt keine X-Anzeige: DISPLAY ist nicht gesetzt</translation>
    </message>
    <message>
        <source>the X display %1 does not answer</source>
        <translation>die X-Anzeige %1 antwortet nicht</translation>
    </message>
    <message>
        <source>Start the program inside a desktop session that runs on X11 or offers Xwayland.</source>
        <translation>Starten Sie das Programm in einer Sitzung, die auf X11 läuft oder Xwayland anbietet.</translation>
    </message>
    <message>
        <source>the X server speaks XInput %1.%2, and %3.%4 is needed to hear keys</source>
        <translation>der X-Server beherrscht XInput %1.%2; um Tasten zu hören, ist %3.%4 nötig</translation>
    </message>
    <message>
        <source>Use an X server of 2012 or later with its XInputExtension switched on.</source>
        <translation>Verwenden Sie einen X-Server von 2012 oder später mit eingeschalteter XInputExtension.</translation>
    </message>
    <message>
        <source>the X server does not offer the extension %1, without which no typing for the user is possible</source>
        <translation>dem X-Server fehlt die Erweiterung %1, ohne die Glyma nichts für Sie eingeben kann</translation>
    </message>
    <message>
        <source>the X server does not offer the extension %1, without which no reading of the keyboard layout is possible</source>
        <translation>dem X-Server fehlt die Erweiterung %1, ohne die sich die Tastaturbelegung nicht lesen lässt</translation>
    </message>
    <message>
        <source>keys are heard on %1 in X11 applications only: this is a Wayland session</source>
        <translation>Tasten werden auf %1 nur in X11-Anwendungen gehört: Dies ist eine Wayland-Sitzung</translation>
    </message>
    <message>
        <source>Log in to an X11 (Xorg) session to use it everywhere.</source>
        <translation>Melden Sie sich in einer X11-Sitzung (Xorg) an, um Glyma überall zu verwenden.</translation>
    </message>
    <message>
        <source>keys are heard on %1</source>
        <translation>Tasten werden auf %1 gehört</translation>
    </message>
    <message>
        <source>Glyma tries again every five seconds. If this stays, log out and in again.</source>
        <translation>Glyma versucht es alle fünf Sekunden erneut. Wenn es dabei bleibt, melden Sie sich ab und wieder an.</translation>
    </message>
    <message>
        <source>The keyboard layout cannot be read from the X server. Set one with setxkbmap, then start Glyma again.</source>
        <translation>Die Tastaturbelegung lässt sich nicht vom X-Server lesen. Legen Sie mit setxkbmap eine fest und starten Sie Glyma dann neu.</translation>
    </message>
    <message>
        <source>Glyma cannot be started at login: it does not know where it is installed. Install it again.</source>
        <translation>Glyma kann nicht bei der Anmeldung gestartet werden: Es weiß nicht, wo es installiert ist. Installieren Sie es erneut.</translation>
    </message>
    <message>
        <source>Glyma cannot be started at login: the folder %1 cannot be made (%2). Check the permissions of the folder that it belongs in.</source>
        <translation>Glyma kann nicht bei der Anmeldung gestartet werden: Der Ordner %1 kann nicht angelegt werden (%2). Prüfen Sie die Zugriffsrechte des übergeordneten Ordners.</translation>
    </message>
    <message>
        <source>Glyma cannot be started at login: %1 cannot be written (%2). Make its folder writable, and see that the disk is not full.</source>
        <translation>Glyma kann nicht bei der Anmeldung gestartet werden: %1 kann nicht geschrieben werden (%2). Machen Sie den Ordner beschreibbar und sorgen Sie dafür, dass der Datenträger nicht voll ist.</translation>
    </message>
    <message>
        <source>Glyma is still started at login: %1 cannot be removed (%2). Make its folder writable.</source>
        <translation>Glyma wird weiterhin bei der Anmeldung gestartet: %1 kann nicht entfernt werden (%2). Machen Sie den Ordner beschreibbar.</translation>
    </message>
    <message>
        <source>Importing Blocks.txt</source>
        <translation>Blocks.txt wird importiert</translation>
    </message>
    <message>
        <source>Importing UnicodeData.txt</source>
        <translation>UnicodeData.txt wird importiert</translation>
    </message>
    <message>
        <source>Checking font coverage</source>
        <translation>Zeichenvorrat der Schriften wird geprüft</translation>
    </message>
    <message>
        <source>Importing annotations.json</source>
        <translation>annotations.json wird importiert</translation>
    </message>
    <message>
        <source>Importing Unikemet.txt</source>
        <translation>Unikemet.txt wird importiert</translation>
    </message>
    <message>
        <source>Inserting characters</source>
        <translation>Zeichen werden eingetragen</translation>
    </message>
    <message>
        <source>Inserting Unicode blocks</source>
        <translation>Unicode-Blöcke werden eingetragen</translation>
    </message>
    <message>
        <source>Finalizing</source>
        <translation>Wird abgeschlossen</translation>
    </message>
    <message>
        <source>Restoring user data</source>
        <translation>Benutzerdaten werden wiederhergestellt</translation>
    </message>
    <message>
        <source>1 time</source>
        <translation>1 Mal</translation>
    </message>
    <message>
        <source>%1 times</source>
        <translation>%1 Mal</translation>
    </message>
    <message>
        <source>%1 · last %2</source>
        <translation>%1 · zuletzt %2</translation>
    </message>
    <message>
        <source>Install the package at-spi2-core, then log out and in again; if it is installed, start Glyma again.</source>
        <translation>Installieren Sie das Paket at-spi2-core, melden Sie sich dann ab und wieder an; ist es schon installiert, starten Sie Glyma neu.</translation>
    </message>
    <message>
        <source>the accessibility bus does not accept connections: %1</source>
        <translation>der Barrierefreiheits-Bus nimmt keine Verbindungen an: %1</translation>
    </message>
    <message>
        <source>the accessibility bus does not accept connections</source>
        <translation>der Barrierefreiheits-Bus nimmt keine Verbindungen an</translation>
    </message>
    <message>
        <source>the accessibility bus has ended</source>
        <translation>der Barrierefreiheits-Bus wurde beendet</translation>
    </message>
</context>
<context>
    <name>glyma::StatusMenu</name>
    <message>
        <source>Importing Library…</source>
        <translation>Bibliothek wird importiert …</translation>
    </message>
    <message>
        <source>⚠️ Adjust Permissions</source>
        <translation>⚠️ Berechtigungen anpassen</translation>
    </message>
    <message>
        <source>🔒 Secure Input is blocking Glyma…</source>
        <translation>🔒 Sichere Eingabe blockiert Glyma …</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Aktualisierungen suchen …</translation>
    </message>
    <message>
        <source>Quit Glyma</source>
        <translation>Glyma beenden</translation>
    </message>
</context>
<context>
    <name>glyma::TrayIcon</name>
    <message>
        <source>Glyma: importing the library</source>
        <translation>Glyma: Die Bibliothek wird importiert</translation>
    </message>
    <message>
        <source>Glyma: a permission is missing</source>
        <translation>Glyma: Eine Berechtigung fehlt</translation>
    </message>
    <message>
        <source>Glyma: Secure Input is on</source>
        <translation>Glyma: Sichere Eingabe ist aktiv</translation>
    </message>
    <message>
        <source>Glyma</source>
        <translation>Glyma</translation>
    </message>
</context>
<context>
    <name>glyma::qt::AddWebsiteSheet</name>
    <message>
        <source>Type a domain, for example example.com.</source>
        <translation>Geben Sie eine Domain ein, zum Beispiel example.com.</translation>
    </message>
    <message>
        <source>This website is in the list already.</source>
        <translation>Diese Website steht bereits in der Liste.</translation>
    </message>
    <message>
        <source>“%1” is not a domain. Type one like example.com, or paste a page&apos;s address.</source>
        <translation>„%1“ ist keine Domain. Geben Sie eine wie example.com ein oder fügen Sie die Adresse einer Seite ein.</translation>
    </message>
    <message>
        <source>Choose a domain from open browser tabs:</source>
        <translation>Domain aus offenen Browser-Tabs auswählen:</translation>
    </message>
    <message>
        <source>Enter a domain to exclude from Glyma:</source>
        <translation>Auszuschließende Domain eingeben:</translation>
    </message>
    <message>
        <source>Add Excluded Website</source>
        <translation>Ausgeschlossene Website hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Andere …</translation>
    </message>
</context>
<context>
    <name>glyma::qt::AdvancedTab</name>
    <message>
        <source>Logs</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>Debug</source>
        <translation>Fehlersuche</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Debug &amp;logs in the journal</source>
        <translation>&amp;Protokoll zur Fehlersuche im Journal</translation>
    </message>
    <message>
        <source>Writes diagnostic messages to the system log (journalctl SUBSYSTEM=net.quillaby.Glyma). Anything you type is redacted to x&apos;s before it is logged.</source>
        <translation>Schreibt Diagnosemeldungen ins Systemprotokoll (journalctl SUBSYSTEM=net.quillaby.Glyma). Was Sie tippen, wird vorher durch x unkenntlich gemacht.</translation>
    </message>
    <message>
        <source>Include the &amp;text you type</source>
        <translation>Getippten &amp;Text aufnehmen</translation>
    </message>
    <message>
        <source>Logs normally replace anything you type with x&apos;s. Turn this on only to capture a bug you want to report — Glyma switches it back off the next time it starts.</source>
        <translation>Im Protokoll wird normalerweise alles, was Sie tippen, durch x ersetzt. Schalten Sie dies nur ein, um einen Fehler festzuhalten, den Sie melden möchten – Glyma schaltet es beim nächsten Start wieder aus.</translation>
    </message>
    <message>
        <source>Show &amp;caret overlay</source>
        <translation>Markierungen am Text&amp;cursor anzeigen</translation>
    </message>
    <message>
        <source>Draws colored rectangles over the caret area when the picker appears: red = AX caret rect, blue = line top, green = line bottom.</source>
        <translation>Zeichnet farbige Rechtecke um den Textcursor, wenn die Auswahl erscheint: rot = Textcursor laut Barrierefreiheit (AX), blau = Zeilenoberkante, grün = Zeilenunterkante.</translation>
    </message>
    <message>
        <source>Show ran&amp;king info</source>
        <translation>&amp;Rangfolge erläutern</translation>
    </message>
    <message>
        <source>Adds a score breakdown row below each emoji&apos;s keywords: text, popularity, usage, and term-learning contributions.</source>
        <translation>Zeigt unter den Stichwörtern jedes Emojis, woraus sich seine Wertung zusammensetzt: Text, Beliebtheit, Verwendung und gelernte Begriffe.</translation>
    </message>
    <message>
        <source>Show AX polling &amp;indicator</source>
        <translation>AX-Abfrage an&amp;zeigen</translation>
    </message>
    <message>
        <source>Shows a green dot in the picker header while AX polling is reading text from the target app.</source>
        <translation>Zeigt einen grünen Punkt im Kopf der Auswahl, während per AX-Abfrage Text aus der Zielanwendung gelesen wird.</translation>
    </message>
    <message>
        <source>Show De&amp;bug tab</source>
        <translation>Seite „Fehlersuche“ anze&amp;igen</translation>
    </message>
    <message>
        <source>Adds a Debug tab to this window with the history of the Random Emoji and Random Unicode insertions.</source>
        <translation>Ergänzt dieses Fenster um die Seite „Fehlersuche“ mit dem Verlauf der Einfügungen durch „Random Emoji“ und „Random Unicode“.</translation>
    </message>
    <message>
        <source>Delete App Container and &amp;Quit…</source>
        <translation>Anwendungsdaten &amp;löschen und beenden …</translation>
    </message>
    <message>
        <source>Removes the SQLite store, all preferences, and cached data. The app will quit and start fresh on next launch.</source>
        <translation>Entfernt die SQLite-Datenbank, alle Einstellungen und zwischengespeicherte Daten. Glyma wird beendet und beginnt beim nächsten Start von vorn.</translation>
    </message>
    <message>
        <source>Glyma Settings</source>
        <translation>Glyma-Einstellungen</translation>
    </message>
    <message>
        <source>Delete App Container and Quit?</source>
        <translation>Anwendungsdaten löschen und beenden?</translation>
    </message>
    <message>
        <source>The Unicode database and all preferences (excluded apps, excluded websites, trigger character, etc.) will be deleted. The app will quit and start fresh on next launch.</source>
        <translation>Die Unicode-Datenbank und alle Einstellungen (ausgeschlossene Anwendungen und Websites, Auslösezeichen usw.) werden gelöscht. Glyma wird beendet und beginnt beim nächsten Start von vorn.</translation>
    </message>
    <message>
        <source>&amp;Delete and Quit</source>
        <translation>&amp;Löschen und beenden</translation>
    </message>
</context>
<context>
    <name>glyma::qt::BlockListModel</name>
    <message>
        <source>No font support</source>
        <translation>Keine Schrift</translation>
    </message>
    <message>
        <source>(%1 of %2)</source>
        <translation>(%1 von %2)</translation>
    </message>
</context>
<context>
    <name>glyma::qt::CharacterDetailView</name>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
</context>
<context>
    <name>glyma::qt::CharacterInfoPanel</name>
    <message>
        <source>Character Info</source>
        <translation>Zeicheninformation</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Showing the first %1 distinct characters.</source>
        <translation>Die ersten %1 verschiedenen Zeichen werden angezeigt.</translation>
    </message>
</context>
<context>
    <name>glyma::qt::CharacterListModel</name>
    <message>
        <source>%1 uses</source>
        <translation>%1-mal verwendet</translation>
    </message>
    <message>
        <source>last: %1</source>
        <translation>zuletzt: %1</translation>
    </message>
</context>
<context>
    <name>glyma::qt::ChooseApplicationSheet</name>
    <message>
        <source>Choose an app to exclude from Glyma</source>
        <translation>Auszuschließende Anwendung auswählen</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Anwendungen</translation>
    </message>
    <message>
        <source>All installed applications are in the list already</source>
        <translation>Alle installierten Anwendungen stehen bereits in der Liste</translation>
    </message>
    <message>
        <source>No application has this in its name</source>
        <translation>Keine Anwendung hat dies im Namen</translation>
    </message>
    <message>
        <source>Search applications…</source>
        <translation>Anwendungen suchen …</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
</context>
<context>
    <name>glyma::qt::CopyButtons</name>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy as UTF-8 Bytes</source>
        <translation>Als UTF-8-Bytes kopieren</translation>
    </message>
    <message>
        <source>Copy as HTML Entity</source>
        <translation>Als HTML-Entität kopieren</translation>
    </message>
    <message>
        <source>Copy as Code Point</source>
        <translation>Als Codepunkt kopieren</translation>
    </message>
    <message>
        <source>Copy as</source>
        <translation>Kopieren als</translation>
    </message>
</context>
<context>
    <name>glyma::qt::DebugTab</name>
    <message>
        <source>Characters inserted by the Random Emoji and Random Unicode entries, newest first.</source>
        <translation>Zeichen, die mit „Random Emoji“ und „Random Unicode“ eingefügt wurden, die neuesten zuerst.</translation>
    </message>
    <message>
        <source>Random Emoji</source>
        <translation>Random Emoji</translation>
    </message>
    <message>
        <source>Random Unicode</source>
        <translation>Random Unicode</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Clear %1</source>
        <translation>%1 leeren</translation>
    </message>
    <message>
        <source>1 pick</source>
        <translation>1 Zeichen</translation>
    </message>
    <message>
        <source>%1 picks</source>
        <translation>%1 Zeichen</translation>
    </message>
    <message>
        <source>No picks recorded yet.</source>
        <translation>Noch keine Zeichen aufgezeichnet.</translation>
    </message>
</context>
<context>
    <name>glyma::qt::EditReplacementSheet</name>
    <message>
        <source>New Replacement</source>
        <translation>Neue Ersetzung</translation>
    </message>
    <message>
        <source>Display name</source>
        <translation>Anzeigename</translation>
    </message>
    <message>
        <source>Comma-separated</source>
        <translation>Durch Kommas getrennt</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>&amp;Keywords</source>
        <translation>&amp;Stichwörter</translation>
    </message>
    <message>
        <source>&amp;Text</source>
        <translation>&amp;Text</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>S&amp;peichern</translation>
    </message>
</context>
<context>
    <name>glyma::qt::EmojiPickerPanel</name>
    <message>
        <source>Glyma picker</source>
        <translation>Glyma-Auswahl</translation>
    </message>
</context>
<context>
    <name>glyma::qt::ExclusionsTab</name>
    <message>
        <source>Glyma will not activate in the apps and websites listed below.</source>
        <translation>In den folgenden Anwendungen und auf den folgenden Websites bleibt Glyma inaktiv.</translation>
    </message>
    <message>
        <source>Excluded Applications</source>
        <translation>Ausgeschlossene Anwendungen</translation>
    </message>
    <message>
        <source>Add excluded application</source>
        <translation>Ausgeschlossene Anwendung hinzufügen</translation>
    </message>
    <message>
        <source>Remove selected application</source>
        <translation>Ausgewählte Anwendung entfernen</translation>
    </message>
    <message>
        <source>Excluded Websites</source>
        <translation>Ausgeschlossene Websites</translation>
    </message>
    <message>
        <source>Add excluded website</source>
        <translation>Ausgeschlossene Website hinzufügen</translation>
    </message>
    <message>
        <source>Remove selected website</source>
        <translation>Ausgewählte Website entfernen</translation>
    </message>
    <message>
        <source>Glyma activates in every application</source>
        <translation>Glyma ist in jeder Anwendung aktiv</translation>
    </message>
    <message>
        <source>Glyma activates on every website</source>
        <translation>Glyma ist auf jeder Website aktiv</translation>
    </message>
</context>
<context>
    <name>glyma::qt::FormGroup</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>glyma::qt::GeneralTab</name>
    <message>
        <source>Colon</source>
        <translation>Doppelpunkt</translation>
    </message>
    <message>
        <source>Plus</source>
        <translation>Plus</translation>
    </message>
    <message>
        <source>Slash</source>
        <translation>Schrägstrich</translation>
    </message>
    <message>
        <source>Tilde</source>
        <translation>Tilde</translation>
    </message>
    <message>
        <source>Trigger character</source>
        <translation>Auslösezeichen</translation>
    </message>
    <message>
        <source>Smiling face</source>
        <translation>Lächelndes Gesicht</translation>
    </message>
    <message>
        <source>Sparkles</source>
        <translation>Funkeln</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message>
        <source>Command key</source>
        <translation>Befehlstaste</translation>
    </message>
    <message>
        <source>Magic wand</source>
        <translation>Zauberstab</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Vorgabe</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Medium-light</source>
        <translation>Mittelhell</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Medium-dark</source>
        <translation>Mitteldunkel</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Picker</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Character Info</source>
        <translation>Zeicheninformation</translation>
    </message>
    <message>
        <source>&amp;Start Glyma at login</source>
        <translation>Glyma bei der An&amp;meldung starten</translation>
    </message>
    <message>
        <source>&amp;Trigger character</source>
        <translation>Auslöse&amp;zeichen</translation>
    </message>
    <message>
        <source>Tray &amp;icon</source>
        <translation>S&amp;ymbol im Systemabschnitt</translation>
    </message>
    <message>
        <source>S&amp;kin tone</source>
        <translation>&amp;Hautton</translation>
    </message>
    <message>
        <source>&amp;Visible rows</source>
        <translation>&amp;Sichtbare Zeilen</translation>
    </message>
    <message>
        <source>A number from %1 to %2</source>
        <translation>Eine Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>Use &amp;fuzzy search</source>
        <translation>&amp;Unscharfe Suche verwenden</translation>
    </message>
    <message>
        <source>S&amp;hortcut</source>
        <translation>&amp;Tastenkombination</translation>
    </message>
    <message>
        <source>Shows details for the text selected in any app. Also available in the menu of Glyma&apos;s launcher.</source>
        <translation>Zeigt Einzelheiten zum Text, der in einer beliebigen Anwendung ausgewählt ist. Auch im Menü des Starters von Glyma verfügbar.</translation>
    </message>
    <message>
        <source>Random &amp;Unicode includes emoji</source>
        <translation>„Random Unicode“ umfasst auch Emo&amp;jis</translation>
    </message>
    <message>
        <source>Turn off to keep the Random Unicode action to non-emoji characters.</source>
        <translation>Ausgeschaltet liefert „Random Unicode“ nur Zeichen, die keine Emojis sind.</translation>
    </message>
    <message>
        <source>&amp;Check for Updates…</source>
        <translation>Na&amp;ch Aktualisierungen suchen …</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>glyma::qt::NoResultsView</name>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
</context>
<context>
    <name>glyma::qt::PermissionsTab</name>
    <message>
        <source>Input Monitoring</source>
        <translation>Eingabeüberwachung</translation>
    </message>
    <message>
        <source>Required to detect the trigger character while typing in any app.</source>
        <translation>Nötig, um das Auslösezeichen beim Tippen in jeder Anwendung zu erkennen.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Barrierefreiheit</translation>
    </message>
    <message>
        <source>Required to read caret position and insert text into other apps.</source>
        <translation>Nötig, um die Position des Textcursors zu lesen und Text in andere Anwendungen einzufügen.</translation>
    </message>
    <message>
        <source>&amp;Switch Accessibility On</source>
        <translation>Barrierefreiheit ein&amp;schalten</translation>
    </message>
    <message>
        <source>Keyboard events are blocked</source>
        <translation>Tastatureingaben sind blockiert</translation>
    </message>
    <message>
        <source>Secure Input is on, which hides all typing from Glyma — the trigger character can&apos;t be detected until it&apos;s released. It is usually switched on by a password field, an authentication dialog, or Secure Keyboard in xterm, and it can get stuck when the computer sleeps or locks midway.</source>
        <translation>Die sichere Eingabe ist aktiv und verbirgt alles Getippte vor Glyma – das Auslösezeichen kann erst erkannt werden, wenn sie wieder freigegeben ist. Meist schaltet ein Passwortfeld, ein Anmeldedialog oder „Secure Keyboard“ in xterm sie ein; sie kann hängen bleiben, wenn der Rechner zwischendurch in Bereitschaft geht oder gesperrt wird.</translation>
    </message>
    <message>
        <source>What to do about %1</source>
        <translation>Was sich für „%1“ tun lässt</translation>
    </message>
    <message>
        <source>Granted</source>
        <translation>Erteilt</translation>
    </message>
    <message>
        <source>Not Granted</source>
        <translation>Nicht erteilt</translation>
    </message>
</context>
<context>
    <name>glyma::qt::PreferencesPages</name>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <source>&amp;Exclusions</source>
        <translation>Aus&amp;nahmen</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Bibliothek</translation>
    </message>
    <message>
        <source>&amp;Replacements</source>
        <translation>&amp;Ersetzungen</translation>
    </message>
    <message>
        <source>&amp;Permissions</source>
        <translation>Berechti&amp;gungen</translation>
    </message>
    <message>
        <source>&amp;Advanced</source>
        <translation>Er&amp;weitert</translation>
    </message>
    <message>
        <source>&amp;Debug</source>
        <translation>&amp;Fehlersuche</translation>
    </message>
</context>
<context>
    <name>glyma::qt::PreferencesWindow</name>
    <message>
        <source>Glyma Settings</source>
        <translation>Glyma-Einstellungen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>glyma::qt::ReplacementsTab</name>
    <message>
        <source>Type the trigger character followed by a keyword to insert one of these snippets.</source>
        <translation>Tippen Sie das Auslösezeichen und ein Stichwort, um einen dieser Textbausteine einzufügen.</translation>
    </message>
    <message>
        <source>Add replacement</source>
        <translation>Ersetzung hinzufügen</translation>
    </message>
    <message>
        <source>Remove selected replacements</source>
        <translation>Ausgewählte Ersetzungen entfernen</translation>
    </message>
</context>
<context>
    <name>glyma::qt::SecureInputText</name>
    <message>
        <source>process %1</source>
        <translation>Prozess %1</translation>
    </message>
    <message>
        <source>The system doesn&apos;t say which app holds it. Close any password prompt first. </source>
        <translation>Das System sagt nicht, welche Anwendung sie hält. Schließen Sie zuerst alle Passwortabfragen. </translation>
    </message>
    <message>
        <source>The system names &lt;b&gt;%1&lt;/b&gt;. If it has a password field open or Secure Keyboard enabled, close it or switch it off. If nothing changes within a few seconds the name is a stale label, and only a session reset helps: </source>
        <translation>Das System nennt &lt;b&gt;%1&lt;/b&gt;. Ist dort ein Passwortfeld offen oder „Secure Keyboard“ eingeschaltet, schließen Sie es oder schalten Sie es aus. Ändert sich binnen weniger Sekunden nichts, ist der Name veraltet, und nur ein Zurücksetzen der Sitzung hilft: </translation>
    </message>
    <message>
        <source>The system names &lt;b&gt;%1&lt;/b&gt;, a system process; the screen locker in particular keeps Secure Input after a lock or sleep. </source>
        <translation>Das System nennt &lt;b&gt;%1&lt;/b&gt;, einen Systemprozess; vor allem die Bildschirmsperre behält die sichere Eingabe nach Sperre oder Bereitschaft. </translation>
    </message>
    <message>
        <source>The system names a process that has already quit (pid %1), so the record is stale. </source>
        <translation>Das System nennt einen Prozess, der schon beendet ist (PID %1); der Eintrag ist also veraltet. </translation>
    </message>
    <message>
        <source>The system names &lt;b&gt;Glyma&lt;/b&gt; itself, which never enables Secure Input. Glyma tried to release it and couldn&apos;t, so the record is a stale label. </source>
        <translation>Das System nennt &lt;b&gt;Glyma&lt;/b&gt; selbst, das die sichere Eingabe nie einschaltet. Glyma hat vergeblich versucht, sie freizugeben; der Eintrag ist also veraltet. </translation>
    </message>
    <message>
        <source>Lock the screen (Super+L) and unlock with your password, not a fingerprint — a fingerprint skips the password field and won&apos;t reset it. If it persists or comes back, log out and back in.</source>
        <translation>Sperren Sie den Bildschirm (Super+L) und entsperren Sie ihn mit Ihrem Passwort, nicht mit dem Fingerabdruck – der Fingerabdruck überspringt das Passwortfeld und setzt nichts zurück. Bleibt es dabei oder tritt es wieder auf, melden Sie sich ab und wieder an.</translation>
    </message>
</context>
<context>
    <name>glyma::qt::ShortcutRecorder</name>
    <message>
        <source>Record Shortcut</source>
        <translation>Tasten aufnehmen</translation>
    </message>
    <message>
        <source>Type shortcut…</source>
        <translation>Tasten drücken …</translation>
    </message>
    <message>
        <source>Remove shortcut</source>
        <translation>Tastenkombination entfernen</translation>
    </message>
    <message>
        <source>Shortcut: %1</source>
        <translation>Tastenkombination: %1</translation>
    </message>
    <message>
        <source>Press it, then the keys. Escape keeps the shortcut, Backspace removes it.</source>
        <translation>Betätigen Sie die Schaltfläche, dann die Tasten. Esc behält die Tastenkombination bei, die Rücktaste entfernt sie.</translation>
    </message>
</context>
<context>
    <name>glyma::qt::SkinToneMenu</name>
    <message>
        <source>Skin tone</source>
        <translation>Hautton</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Vorgabe</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Medium-light</source>
        <translation>Mittelhell</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Medium-dark</source>
        <translation>Mitteldunkel</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
</context>
<context>
    <name>glyma::qt::SnippetList</name>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>No text</source>
        <translation>Kein Text</translation>
    </message>
    <message>
        <source>Replacements</source>
        <translation>Ersetzungen</translation>
    </message>
    <message>
        <source>No replacements</source>
        <translation>Keine Ersetzungen</translation>
    </message>
    <message>
        <source>Click + to add a custom text snippet.</source>
        <translation>Klicken Sie auf +, um einen eigenen Textbaustein hinzuzufügen.</translation>
    </message>
</context>
<context>
    <name>glyma::qt::UnicodeTab</name>
    <message>
        <source>Blocks</source>
        <translation>Blöcke</translation>
    </message>
    <message>
        <source>No block has this in its name</source>
        <translation>Kein Block hat dies im Namen</translation>
    </message>
    <message>
        <source>Filter blocks…</source>
        <translation>Blöcke filtern …</translation>
    </message>
    <message>
        <source>Characters</source>
        <translation>Zeichen</translation>
    </message>
    <message>
        <source>Filter characters…</source>
        <translation>Zeichen filtern …</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Select one or more characters</source>
        <translation>Wählen Sie ein oder mehrere Zeichen aus</translation>
    </message>
    <message>
        <source>Importing Unicode data…</source>
        <translation>Unicode-Daten werden importiert …</translation>
    </message>
    <message>
        <source>&amp;Test Picker</source>
        <translation>Auswahl aus&amp;probieren</translation>
    </message>
    <message>
        <source>Select a block</source>
        <translation>Wählen Sie einen Block aus</translation>
    </message>
    <message>
        <source>No font support</source>
        <translation>Keine Schrift</translation>
    </message>
    <message>
        <source>No character matches the filter</source>
        <translation>Kein Zeichen entspricht dem Filter</translation>
    </message>
    <message>
        <source>%1 more selected</source>
        <translation>%1 weitere ausgewählt</translation>
    </message>
    <message>
        <source>The library is not available</source>
        <translation>Die Bibliothek ist nicht verfügbar</translation>
    </message>
    <message>
        <source>Type %1 and the beginning of a name</source>
        <translation>Tippen Sie %1 und den Anfang eines Namens</translation>
    </message>
</context>
</TS>
