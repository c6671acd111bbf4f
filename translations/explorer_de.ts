<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>explorer</name>
    <message>
        <location filename="../apps/explorer/main.cpp" line="+39"/>
        <source>Browses the tables of a database in a data grid.</source>
        <translation>Zeigt die Tabellen einer Datenbank in einem Datengitter.</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>An SQLite file or a postgresql:// address (default: the sample database).</source>
        <translation>Eine SQLite-Datei oder eine postgresql://-Adresse (Vorgabe: die Beispieldatenbank).</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>The table to show first.</source>
        <translation>Die zuerst gezeigte Tabelle.</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Render the window to a PNG file and exit.</source>
        <translation>Das Fenster in eine PNG-Datei zeichnen und beenden.</translation>
    </message>
</context>
<context>
    <name>explorer::ExplorerWindow</name>
    <message>
        <location filename="../apps/explorer/ExplorerWindow.cpp" line="+43"/>
        <location line="+209"/>
        <source>Explorer</source>
        <translation>Explorer</translation>
    </message>
    <message>
        <location line="-178"/>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <location line="+6"/>
        <location line="+289"/>
        <source>Record %1 of %2</source>
        <translation>Datensatz %1 von %2</translation>
    </message>
    <message>
        <location line="-285"/>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Open SQLite database...</source>
        <translation>SQLite-Datenbank ö&amp;ffnen...</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Fit columns to their content</source>
        <translation>Spalten an &amp;Inhalt anpassen</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>&amp;Stretch columns to the window</source>
        <translation>Spalten auf Fenster&amp;breite strecken</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>&amp;Columns...</source>
        <translation>&amp;Spalten...</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>&amp;Totals</source>
        <translation>S&amp;ummen</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>The database %1 does not exist</source>
        <translation>Die Datenbank %1 existiert nicht</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>%1 - Explorer</source>
        <translation>%1 - Explorer</translation>
    </message>
    <message>
        <location line="+56"/>
        <source>Open SQLite database</source>
        <translation>SQLite-Datenbank öffnen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>SQLite databases (*.db *.sqlite *.sqlite3);;All files (*)</source>
        <translation>SQLite-Datenbanken (*.db *.sqlite *.sqlite3);;Alle Dateien (*)</translation>
    </message>
    <message>
        <location line="+130"/>
        <source>Record %1</source>
        <translation>Datensatz %1</translation>
    </message>
    <message numerus="yes">
        <location line="+4"/>
        <source>%n record(s)</source>
        <translation>
            <numerusform>%n Datensatz</numerusform>
            <numerusform>%n Datensätze</numerusform>
        </translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Reading... press Esc to cancel</source>
        <translation>Lesen... Esc bricht ab</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
</context>
</TS>
