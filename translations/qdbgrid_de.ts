<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QDBGrids</name>
    <message>
        <location filename="../src/grid/QDBGridSelection.cpp" line="+15"/>
        <source>KeyFields property cannot be blank</source>
        <translation>Die Eigenschaft KeyFields darf nicht leer sein</translation>
    </message>
</context>
<context>
    <name>qdb</name>
    <message>
        <location filename="../src/data/QDBNavigator.cpp" line="+126"/>
        <source>First</source>
        <translation>Erster</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Prior</source>
        <translation>Vorheriger</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next</source>
        <translation>Nächster</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Last</source>
        <translation>Letzter</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Insert</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Post</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <location line="+0"/>
        <location filename="../src/filter/QDBFilterForm.cpp" line="+150"/>
        <location filename="../src/filter/QDBFilterList.cpp" line="+52"/>
        <location filename="../src/grid/QDBGridProgress.cpp" line="+22"/>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Apply Updates</source>
        <translation>Änderungen übernehmen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Cancel Updates</source>
        <translation>Änderungen verwerfen</translation>
    </message>
    <message>
        <location filename="../src/dialogs/QDBColumnsEditor.cpp" line="+30"/>
        <location filename="../src/dialogs/QDBLists.cpp" line="+23"/>
        <location filename="../src/dialogs/QDBToolMenu.cpp" line="+75"/>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Caption</source>
        <translation>Beschriftung</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Header</source>
        <translation>Überschrift</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Visible</source>
        <translation>Sichtbar</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <location line="+4"/>
        <location filename="../src/dialogs/QDBLists.cpp" line="+16"/>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <location line="+1"/>
        <location filename="../src/dialogs/QDBLists.cpp" line="+1"/>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <location filename="../src/dialogs/QDBLists.cpp" line="+1"/>
        <source>&amp;Show All</source>
        <translation>Alle &amp;zeigen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Hide All</source>
        <translation>Alle &amp;ausblenden</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Center</source>
        <translation>Zentriert</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>&amp;Caption:</source>
        <translation>&amp;Beschriftung:</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Width:</source>
        <translation>&amp;Breite:</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Alignment:</source>
        <translation>&amp;Ausrichtung:</translation>
    </message>
    <message>
        <location filename="../src/dialogs/QDBToolMenu.cpp" line="-55"/>
        <source>Settings files (*.ini)</source>
        <translation>Einstellungsdateien (*.ini)</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Fit Column Widths</source>
        <translation>Spaltenbreiten anpassen</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Stretch Columns</source>
        <translation>Spalten strecken</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Clear Sorting</source>
        <translation>Sortierung aufheben</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Clear Filter</source>
        <translation>Filter aufheben</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Find...</source>
        <translation>Suchen...</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <location line="+54"/>
        <source>Columns...</source>
        <translation>Spalten...</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Restore Default Columns</source>
        <translation>Standardspalten wiederherstellen</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Selection</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Select Rows</source>
        <translation>Zeilen auswählen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Select Columns</source>
        <translation>Spalten auswählen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Select Cells</source>
        <translation>Zellen auswählen</translation>
    </message>
    <message>
        <location line="+18"/>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Clear Selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <location line="+15"/>
        <location line="+25"/>
        <source>Save Layout</source>
        <translation>Layout speichern</translation>
    </message>
    <message>
        <location line="-24"/>
        <source>Load Layout</source>
        <translation>Layout laden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Erase Layout</source>
        <translation>Layout löschen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Save Layout As...</source>
        <translation>Layout speichern unter...</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Open Layout...</source>
        <translation>Layout öffnen...</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Load Layout at Start</source>
        <translation>Layout beim Start laden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Save Layout at Exit</source>
        <translation>Layout beim Beenden speichern</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Open Layout</source>
        <translation>Layout öffnen</translation>
    </message>
    <message>
        <location filename="../src/editors/QDBLookupList.cpp" line="+32"/>
        <source>The column %1 has no lookup data set</source>
        <translation>Die Spalte %1 hat keine Nachschlagedatenmenge</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBFilterConsts.cpp" line="+9"/>
        <source>contains</source>
        <translation>enthält</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>does not contain</source>
        <translation>enthält nicht</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>starts from</source>
        <translation>beginnt mit</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>does not start from</source>
        <translation>beginnt nicht mit</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ends with</source>
        <translation>endet mit</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>does not end with</source>
        <translation>endet nicht mit</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is equal</source>
        <translation>ist gleich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is not equal</source>
        <translation>ist ungleich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is greater then</source>
        <translation>ist größer als</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is greater then or equal</source>
        <translation>ist größer als oder gleich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is less then</source>
        <translation>ist kleiner als</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is less then or equal</source>
        <translation>ist kleiner als oder gleich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is on the list</source>
        <translation>ist in der Liste</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is not on the list</source>
        <translation>ist nicht in der Liste</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>is not empty</source>
        <translation>ist nicht leer</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBFilterConsts.h" line="+21"/>
        <source>Invalid filter expression: %s</source>
        <translation>Ungültiger Filterausdruck: %s</translation>
    </message>
    <message>
        <location line="+1"/>
        <location filename="../src/filter/QDBFilterForm.cpp" line="-17"/>
        <source>Symbol %s replaces any character</source>
        <translation>Das Zeichen %s steht für ein beliebiges Zeichen</translation>
    </message>
    <message>
        <location line="+1"/>
        <location filename="../src/filter/QDBFilterForm.cpp" line="+2"/>
        <source>Symbol %s replaces any text string</source>
        <translation>Das Zeichen %s steht für eine beliebige Zeichenfolge</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Select period</source>
        <translation>Zeitraum wählen</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBFilterList.cpp" line="-12"/>
        <source>Remove filter</source>
        <translation>Filter entfernen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Select filter...</source>
        <translation>Filter wählen...</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Add selected</source>
        <translation>Ausgewählte hinzufügen</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBFilterForm.cpp" line="-75"/>
        <source>Select filter</source>
        <translation>Filter wählen</translation>
    </message>
    <message>
        <location line="+27"/>
        <source>Show the rows in which the field %s</source>
        <translation>Zeilen anzeigen, in denen das Feld %s</translation>
    </message>
    <message>
        <location line="+31"/>
        <source>AND</source>
        <translation>UND</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>OR</source>
        <translation>ODER</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Reverse filter conditions</source>
        <translation>Filterbedingungen umkehren</translation>
    </message>
    <message>
        <location line="+21"/>
        <location filename="../src/filter/QDBFilterList.cpp" line="+10"/>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <location line="+225"/>
        <source>Show calendar</source>
        <translation>Kalender anzeigen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Show calculator</source>
        <translation>Rechner anzeigen</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>Clear conditions</source>
        <translation>Bedingungen löschen</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBFilterList.cpp" line="+138"/>
        <source>%1 (all rows)</source>
        <translation>%1 (alle Zeilen)</translation>
    </message>
    <message>
        <location line="+222"/>
        <source>%1 values ticked</source>
        <translation>%1 Werte ausgewählt</translation>
    </message>
    <message>
        <location line="+263"/>
        <location line="+45"/>
        <source>(Empty)</source>
        <translation>(Leer)</translation>
    </message>
    <message>
        <location line="+107"/>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBFilterPeriods.cpp" line="+57"/>
        <source>Past minute</source>
        <translation>Letzte Minute</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this minute</source>
        <translation>Ab Beginn dieser Minute</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This minute</source>
        <translation>Diese Minute</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this minute</source>
        <translation>Bis Ende dieser Minute</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next minute</source>
        <translation>Nächste Minute</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past 10 mins</source>
        <translation>Letzte 10 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this 10 mins</source>
        <translation>Ab Beginn dieser 10 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This 10 mins</source>
        <translation>Diese 10 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this 10 mins</source>
        <translation>Bis Ende dieser 10 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next 10 mins</source>
        <translation>Nächste 10 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past 15 mins</source>
        <translation>Letzte 15 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this 15 mins</source>
        <translation>Ab Beginn dieser 15 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This 15 mins</source>
        <translation>Diese 15 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this 15 mins</source>
        <translation>Bis Ende dieser 15 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next 15 mins</source>
        <translation>Nächste 15 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past 20 mins</source>
        <translation>Letzte 20 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this 20 mins</source>
        <translation>Ab Beginn dieser 20 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This 20 mins</source>
        <translation>Diese 20 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this 20 mins</source>
        <translation>Bis Ende dieser 20 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next 20 mins</source>
        <translation>Nächste 20 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past 30 mins</source>
        <translation>Letzte 30 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this 30 mins</source>
        <translation>Ab Beginn dieser 30 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This 30 mins</source>
        <translation>Diese 30 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this 30 mins</source>
        <translation>Bis Ende dieser 30 Minuten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next 30 mins</source>
        <translation>Nächste 30 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past hour</source>
        <translation>Letzte Stunde</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this hour</source>
        <translation>Ab Beginn dieser Stunde</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This hour</source>
        <translation>Diese Stunde</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this hour</source>
        <translation>Bis Ende dieser Stunde</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next hour</source>
        <translation>Nächste Stunde</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this day</source>
        <translation>Ab Beginn dieses Tages</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this day</source>
        <translation>Bis Ende dieses Tages</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Tomorrow</source>
        <translation>Morgen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past week</source>
        <translation>Letzte Woche</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this week</source>
        <translation>Ab Beginn dieser Woche</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This week</source>
        <translation>Diese Woche</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this week</source>
        <translation>Bis Ende dieser Woche</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next week</source>
        <translation>Nächste Woche</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past month</source>
        <translation>Letzter Monat</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this month</source>
        <translation>Ab Beginn dieses Monats</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This month</source>
        <translation>Dieser Monat</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this month</source>
        <translation>Bis Ende dieses Monats</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next month</source>
        <translation>Nächster Monat</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past quarter</source>
        <translation>Letztes Quartal</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this quarter</source>
        <translation>Ab Beginn dieses Quartals</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This quarter</source>
        <translation>Dieses Quartal</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this quarter</source>
        <translation>Bis Ende dieses Quartals</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next quarter</source>
        <translation>Nächstes Quartal</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past semester</source>
        <translation>Letztes Halbjahr</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this semester</source>
        <translation>Ab Beginn dieses Halbjahres</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This semester</source>
        <translation>Dieses Halbjahr</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this semester</source>
        <translation>Bis Ende dieses Halbjahres</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next semester</source>
        <translation>Nächstes Halbjahr</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past year</source>
        <translation>Letztes Jahr</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this year</source>
        <translation>Ab Beginn dieses Jahres</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This year</source>
        <translation>Dieses Jahr</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this year</source>
        <translation>Bis Ende dieses Jahres</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next year</source>
        <translation>Nächstes Jahr</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Past decade</source>
        <translation>Letztes Jahrzehnt</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>From start of this decade</source>
        <translation>Ab Beginn dieses Jahrzehnts</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>This decade</source>
        <translation>Dieses Jahrzehnt</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>To the end of this decade</source>
        <translation>Bis Ende dieses Jahrzehnts</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next decade</source>
        <translation>Nächstes Jahrzehnt</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Minute</source>
        <translation>Minute</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>10 minutes</source>
        <translation>10 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>15 minutes</source>
        <translation>15 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>20 minutes</source>
        <translation>20 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>30 minutes</source>
        <translation>30 Minuten</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Hour</source>
        <translation>Stunde</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Week</source>
        <translation>Woche</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Weeks</source>
        <translation>Wochen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Months</source>
        <translation>Monate</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Quarter</source>
        <translation>Quartal</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Quarters</source>
        <translation>Quartale</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Semester</source>
        <translation>Halbjahr</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Semesters</source>
        <translation>Halbjahre</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Years</source>
        <translation>Jahre</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Decade</source>
        <translation>Jahrzehnt</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Decades</source>
        <translation>Jahrzehnte</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>First quarter</source>
        <translation>Erstes Quartal</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Second quarter</source>
        <translation>Zweites Quartal</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Third quarter</source>
        <translation>Drittes Quartal</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Fourth quarter</source>
        <translation>Viertes Quartal</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>First semester</source>
        <translation>Erstes Halbjahr</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Second semester</source>
        <translation>Zweites Halbjahr</translation>
    </message>
    <message>
        <location filename="../src/filter/QDBSearchPanel.cpp" line="+35"/>
        <source>Close search (Esc)</source>
        <translation>Suche schließen (Esc)</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Find first (Ctrl+F3)</source>
        <translation>Erste suchen (Strg+F3)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Find last (Alt+F3)</source>
        <translation>Letzte suchen (Alt+F3)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Search down (F3)</source>
        <translation>Abwärts suchen (F3)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Search up (Shift+F3)</source>
        <translation>Aufwärts suchen (Umschalt+F3)</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>&amp;Case sensitive</source>
        <translation>&amp;Groß-/Kleinschreibung</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>&amp;Whole words</source>
        <translation>Ganze &amp;Wörter</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>W&amp;rap around</source>
        <translation>&amp;Am Ende von vorn</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>C&amp;urrent column</source>
        <translation>Nur aktuelle &amp;Spalte</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>&amp;Filter rows</source>
        <translation>Zeilen &amp;filtern</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBColumns.cpp" line="+791"/>
        <source>No.</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Select</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Expand</source>
        <translation>Erweitern</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBColumnsStream.cpp" line="+57"/>
        <source>Stream write error: %1</source>
        <translation>Fehler beim Schreiben des Datenstroms: %1</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+3"/>
        <source>Cannot create file &quot;%1&quot;. %2</source>
        <translation>Die Datei „%1“ kann nicht erstellt werden. %2</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Cannot open file &quot;%1&quot;. %2</source>
        <translation>Die Datei „%1“ kann nicht geöffnet werden. %2</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBColumnValues.cpp" line="+207"/>
        <source>&quot;%1&quot; is not in the list of %2</source>
        <translation>„%1“ ist nicht in der Liste von %2</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBGridClipboard.cpp" line="+71"/>
        <source>Copying...</source>
        <translation>Kopieren...</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBGridEditing.cpp" line="+126"/>
        <source>The text does not fit the field&apos;s edit mask. Press Esc to abandon the change.</source>
        <translation>Der Text passt nicht zur Eingabemaske des Feldes. Mit Esc wird die Änderung verworfen.</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBGridKeys.cpp" line="+121"/>
        <location filename="../src/platform/dbctrls/DBNavigator.cpp" line="+302"/>
        <source>Delete record?</source>
        <translation>Datensatz löschen?</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBGridOrder.cpp" line="+392"/>
        <location filename="../src/platform/rtl/Streaming.cpp" line="+51"/>
        <source>Error reading %1.%2: %3</source>
        <translation>Fehler beim Lesen von %1.%2: %3</translation>
    </message>
    <message>
        <location line="+2"/>
        <location filename="../src/platform/rtl/Streaming.cpp" line="+127"/>
        <location line="+100"/>
        <source>invalid property value</source>
        <translation>ungültiger Eigenschaftswert</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBGridSearching.cpp" line="+146"/>
        <source>Searching...</source>
        <translation>Suche läuft...</translation>
    </message>
    <message>
        <location line="+39"/>
        <source>Search match not found!<byte value="xd"/>Restart search from the beginning?</source>
        <translation>Kein Treffer gefunden!<byte value="xd"/>Suche von vorn beginnen?</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Search string &apos;%s&apos; not found!</source>
        <translation>Suchtext &apos;%s&apos; nicht gefunden!</translation>
    </message>
    <message>
        <location filename="../src/grid/QDBGridSettings.cpp" line="+360"/>
        <source>The saved layout of the grid could not be loaded: %1</source>
        <translation>Das gespeicherte Layout des Gitters konnte nicht geladen werden: %1</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>The layout of the grid could not be saved: %1</source>
        <translation>Das Layout des Gitters konnte nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <location filename="../src/platform/db/DBConsts.h" line="+11"/>
        <source>Field &apos;%1&apos; not found</source>
        <translation>Feld &apos;%1&apos; nicht gefunden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Field &apos;%1&apos; cannot be modified</source>
        <translation>Feld &apos;%1&apos; kann nicht geändert werden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Field &apos;%1&apos; must have a value</source>
        <translation>Feld &apos;%1&apos; muss einen Wert haben</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Dataset not in edit or insert mode</source>
        <translation>Datenmenge ist nicht im Bearbeitungs- oder Einfügemodus</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cannot perform this operation on a closed dataset</source>
        <translation>Diese Operation ist bei einer geschlossenen Datenmenge nicht möglich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cannot perform this operation on an open dataset</source>
        <translation>Diese Operation ist bei einer geöffneten Datenmenge nicht möglich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cannot perform this operation on an empty dataset</source>
        <translation>Diese Operation ist bei einer leeren Datenmenge nicht möglich</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cannot modify a read-only dataset</source>
        <translation>Eine schreibgeschützte Datenmenge kann nicht geändert werden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Operation not allowed on a unidirectional dataset</source>
        <translation>Operation bei einer unidirektionalen Datenmenge nicht zulässig</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Record not found</source>
        <translation>Datensatz nicht gefunden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Grid requested to display more than 256 columns</source>
        <translation>Das Gitter soll mehr als 256 Spalten anzeigen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Invalid bookmark</source>
        <translation>Ungültiges Lesezeichen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&apos;%1&apos; is not a valid integer value for field &apos;%2&apos;</source>
        <translation>&apos;%1&apos; ist kein gültiger Ganzzahlwert für Feld &apos;%2&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&apos;%1&apos; is not a valid floating point value for field &apos;%2&apos;</source>
        <translation>&apos;%1&apos; ist kein gültiger Gleitkommawert für Feld &apos;%2&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&apos;%1&apos; is not a valid boolean value for field &apos;%2&apos;</source>
        <translation>&apos;%1&apos; ist kein gültiger Wahrheitswert für Feld &apos;%2&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&apos;%1&apos; is not a valid date and time for field &apos;%2&apos;</source>
        <translation>&apos;%1&apos; ist kein gültiges Datum mit Uhrzeit für Feld &apos;%2&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>%1 is not a valid value for field &apos;%2&apos;. The allowed range is %3 to %4</source>
        <translation>%1 ist kein gültiger Wert für Feld &apos;%2&apos;. Der zulässige Bereich ist %3 bis %4</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cannot access field &apos;%1&apos; as type %2</source>
        <translation>Auf Feld &apos;%1&apos; kann nicht als Typ %2 zugegriffen werden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Invalid value for field &apos;%1&apos;</source>
        <translation>Ungültiger Wert für Feld &apos;%1&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Duplicate field name &apos;%1&apos;</source>
        <translation>Doppelter Feldname &apos;%1&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Circular datalinks are not allowed</source>
        <translation>Zirkuläre Datenverbindungen sind nicht zulässig</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Field index out of range</source>
        <translation>Feldindex außerhalb des gültigen Bereichs</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Index &apos;%1&apos; not found</source>
        <translation>Index &apos;%1&apos; nicht gefunden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Duplicate index name &apos;%1&apos;</source>
        <translation>Doppelter Indexname &apos;%1&apos;</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>No fields defined for the dataset</source>
        <translation>Für die Datenmenge sind keine Felder definiert</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Unsupported field type (%1) in field %2</source>
        <translation>Nicht unterstützter Feldtyp (%1) in Feld %2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Type mismatch for field &apos;%1&apos;, expecting: %2 actual: %3</source>
        <translation>Typkonflikt bei Feld &apos;%1&apos;, erwartet: %2, tatsächlich: %3</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Lookup information for field &apos;%1&apos; is incomplete</source>
        <translation>Die Nachschlageangaben für Feld &apos;%1&apos; sind unvollständig</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Filter expression: %1 at position %2 in &quot;%3&quot;</source>
        <translation>Filterausdruck: %1 an Position %2 in „%3“</translation>
    </message>
    <message>
        <location filename="../src/platform/db/MemTableFile.cpp" line="+45"/>
        <source>Cannot load %1: %2</source>
        <translation>%1 kann nicht geladen werden: %2</translation>
    </message>
    <message>
        <location line="+270"/>
        <source>Cannot save %1: %2</source>
        <translation>%1 kann nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Cannot open %1: %2</source>
        <translation>%1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <location filename="../src/platform/dbctrls/DBNavigator.cpp" line="-168"/>
        <source>First record</source>
        <translation>Erster Datensatz</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Prior record</source>
        <translation>Vorheriger Datensatz</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Next record</source>
        <translation>Nächster Datensatz</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Last record</source>
        <translation>Letzter Datensatz</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Insert record</source>
        <translation>Datensatz einfügen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Delete record</source>
        <translation>Datensatz löschen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Edit record</source>
        <translation>Datensatz bearbeiten</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Post edit</source>
        <translation>Änderung speichern</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cancel edit</source>
        <translation>Änderung verwerfen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Refresh data</source>
        <translation>Daten aktualisieren</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Apply updates</source>
        <translation>Änderungen übernehmen</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Cancel updates</source>
        <translation>Änderungen verwerfen</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Collection.cpp" line="+80"/>
        <location filename="../src/platform/rtl/Strings.cpp" line="+352"/>
        <source>List index out of bounds (%1)</source>
        <translation>Listenindex außerhalb des gültigen Bereichs (%1)</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Conversions.cpp" line="+18"/>
        <source>&apos;%1&apos; is not a valid integer value</source>
        <translation>&apos;%1&apos; ist kein gültiger Ganzzahlwert</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>&apos;%1&apos; is not a valid floating point value</source>
        <translation>&apos;%1&apos; ist kein gültiger Gleitkommawert</translation>
    </message>
    <message>
        <location line="+245"/>
        <source>&apos;%1&apos; is not a valid boolean value</source>
        <translation>&apos;%1&apos; ist kein gültiger Wahrheitswert</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Currency.cpp" line="+42"/>
        <source>%1 is not within the valid range of currency values</source>
        <translation>%1 liegt nicht im gültigen Bereich für Währungswerte</translation>
    </message>
    <message>
        <location line="+27"/>
        <location filename="../src/platform/rtl/Variant.cpp" line="+56"/>
        <source>Division by zero</source>
        <translation>Division durch Null</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/DateTime.cpp" line="+77"/>
        <source>Invalid argument to date encode</source>
        <translation>Ungültiges Argument für die Datumskodierung</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Invalid argument to time encode</source>
        <translation>Ungültiges Argument für die Zeitkodierung</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Dialogs.cpp" line="+58"/>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Confirm</source>
        <translation>Bestätigen</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Exceptions.cpp" line="+14"/>
        <source>Operation aborted</source>
        <translation>Vorgang abgebrochen</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Format.cpp" line="+49"/>
        <source>Format &apos;%1&apos; invalid or incompatible with argument</source>
        <translation>Format &apos;%1&apos; ist ungültig oder passt nicht zum Argument</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/FormatDateTime.cpp" line="+363"/>
        <source>&apos;%1&apos; is not a valid date</source>
        <translation>&apos;%1&apos; ist kein gültiges Datum</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>&apos;%1&apos; is not a valid time</source>
        <translation>&apos;%1&apos; ist keine gültige Uhrzeit</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>&apos;%1&apos; is not a valid date and time</source>
        <translation>&apos;%1&apos; ist kein gültiges Datum mit Uhrzeit</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/IniFiles.cpp" line="+167"/>
        <source>Unable to write to %1: %2</source>
        <translation>In %1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <location line="+61"/>
        <source>Invalid name &apos;%1&apos; in section &apos;%2&apos; of %3</source>
        <translation>Ungültiger Name &apos;%1&apos; im Abschnitt &apos;%2&apos; von %3</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>The value of &apos;%1&apos; in section &apos;%2&apos; contains a line break</source>
        <translation>Der Wert von &apos;%1&apos; im Abschnitt &apos;%2&apos; enthält einen Zeilenumbruch</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/RegistryIniFile.cpp" line="+110"/>
        <source>Unable to write to %1</source>
        <translation>In %1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Streaming.cpp" line="-131"/>
        <source>a list of strings was expected</source>
        <translation>eine Liste von Zeichenfolgen wurde erwartet</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>a list of items was expected</source>
        <translation>eine Liste von Einträgen wurde erwartet</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>an item was expected</source>
        <translation>ein Eintrag wurde erwartet</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>invalid reference &apos;%1&apos;</source>
        <translation>ungültiger Verweis &apos;%1&apos;</translation>
    </message>
    <message>
        <location line="+95"/>
        <source>property does not exist</source>
        <translation>Eigenschaft existiert nicht</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Invalid component stream at offset %1: %2</source>
        <translation>Ungültiger Komponentenstrom an Position %1: %2</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Invalid component stream: an object was expected</source>
        <translation>Ungültiger Komponentenstrom: ein Objekt wurde erwartet</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Strings.cpp" line="-334"/>
        <source>Operation not allowed on sorted list</source>
        <translation>Operation bei einer sortierten Liste nicht zulässig</translation>
    </message>
    <message>
        <location line="+405"/>
        <source>String list does not allow duplicates</source>
        <translation>Die Stringliste erlaubt keine Duplikate</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/TypInfo.cpp" line="+177"/>
        <source>Unknown property: &apos;%1&apos;</source>
        <translation>Unbekannte Eigenschaft: &apos;%1&apos;</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Property &apos;%1&apos; is read-only</source>
        <translation>Eigenschaft &apos;%1&apos; ist schreibgeschützt</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Invalid property value &apos;%1&apos; for &apos;%2&apos;</source>
        <translation>Ungültiger Eigenschaftswert &apos;%1&apos; für &apos;%2&apos;</translation>
    </message>
    <message>
        <location filename="../src/platform/rtl/Variant.cpp" line="+5"/>
        <source>Invalid variant operation</source>
        <translation>Ungültige Variant-Operation</translation>
    </message>
    <message>
        <location line="+82"/>
        <source>Could not convert variant of type (%1) into type (%2)</source>
        <translation>Variant des Typs (%1) konnte nicht in Typ (%2) umgewandelt werden</translation>
    </message>
    <message>
        <location filename="../src/platform/sql/SQLConnection.cpp" line="+472"/>
        <location line="+8"/>
        <source>The statement failed</source>
        <translation>Die Anweisung ist fehlgeschlagen</translation>
    </message>
    <message>
        <location line="-4"/>
        <source>The statement cannot be prepared</source>
        <translation>Die Anweisung kann nicht vorbereitet werden</translation>
    </message>
    <message>
        <location filename="../src/platform/sql/SQLiteSource.cpp" line="+41"/>
        <location line="+116"/>
        <location filename="../src/platform/sql/SQLQtSources.cpp" line="+39"/>
        <source>The query failed</source>
        <translation>Die Abfrage ist fehlgeschlagen</translation>
    </message>
    <message>
        <location line="+136"/>
        <source>The SQLite driver gives no access to its database</source>
        <translation>Der SQLite-Treiber gibt keinen Zugriff auf seine Datenbank</translation>
    </message>
    <message>
        <location filename="../src/platform/sql/SQLRowSource.cpp" line="+316"/>
        <source>The read was cancelled</source>
        <translation>Das Lesen wurde abgebrochen</translation>
    </message>
    <message>
        <location line="+373"/>
        <source>The query has %1 parameters but %2 values</source>
        <translation>Die Abfrage hat %1 Parameter, aber %2 Werte</translation>
    </message>
</context>
<context>
    <name>qdb::TCustomSQLDataSet</name>
    <message>
        <location filename="../src/platform/sql/SQLDataSet.cpp" line="+100"/>
        <source>No connection is set</source>
        <translation>Keine Verbindung festgelegt</translation>
    </message>
    <message>
        <location line="+564"/>
        <source>The record cannot be found again: the data set has no key fields</source>
        <translation>Der Datensatz kann nicht wiedergefunden werden: die Datenmenge hat keine Schlüsselfelder</translation>
    </message>
    <message>
        <location filename="../src/platform/sql/SQLEditing.cpp" line="+80"/>
        <source>The key field %1 of table %2 is not in the query</source>
        <translation>Das Schlüsselfeld %1 der Tabelle %2 ist nicht in der Abfrage</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Table %1 has no primary key; set KeyFields to say which fields identify a record</source>
        <translation>Tabelle %1 hat keinen Primärschlüssel; KeyFields muss angeben, welche Felder einen Datensatz bestimmen</translation>
    </message>
    <message>
        <location line="+81"/>
        <location line="+4"/>
        <source>The record cannot be saved</source>
        <translation>Der Datensatz kann nicht gespeichert werden</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>The record was changed or deleted by someone else; refresh and try again</source>
        <translation>Der Datensatz wurde von anderer Seite geändert oder gelöscht; bitte aktualisieren und erneut versuchen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>The key fields match more than one record; nothing was saved</source>
        <translation>Die Schlüsselfelder passen auf mehr als einen Datensatz; nichts wurde gespeichert</translation>
    </message>
    <message>
        <location line="+48"/>
        <location line="+4"/>
        <source>The record cannot be deleted</source>
        <translation>Der Datensatz kann nicht gelöscht werden</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>The record was already deleted by someone else</source>
        <translation>Der Datensatz wurde bereits von anderer Seite gelöscht</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>The key fields match more than one record; nothing was deleted</source>
        <translation>Die Schlüsselfelder passen auf mehr als einen Datensatz; nichts wurde gelöscht</translation>
    </message>
</context>
<context>
    <name>qdb::TQDBGridAccessible</name>
    <message>
        <location filename="../src/grid/QDBGridAccessible.cpp" line="+89"/>
        <source>Totals</source>
        <translation>Summen</translation>
    </message>
    <message>
        <location line="+306"/>
        <source>Sorted ascending</source>
        <translation>Aufsteigend sortiert</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Sorted descending</source>
        <translation>Absteigend sortiert</translation>
    </message>
</context>
<context>
    <name>qdb::TQDBPopupCalendar</name>
    <message>
        <location filename="../src/editors/QDBCalendar.cpp" line="+130"/>
        <source>Today: %1</source>
        <translation>Heute: %1</translation>
    </message>
    <message>
        <location line="+34"/>
        <source>Wk</source>
        <translation>KW</translation>
    </message>
</context>
<context>
    <name>qdb::TSQLConnection</name>
    <message>
        <location filename="../src/platform/sql/SQLConnection.cpp" line="-416"/>
        <source>Cannot change the connection while it is open</source>
        <translation>Die Verbindung kann nicht geändert werden, solange sie geöffnet ist</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>&apos;%1&apos; is not a valid PostgreSQL address (postgresql://user@host:port/database)</source>
        <translation>&apos;%1&apos; ist keine gültige PostgreSQL-Adresse (postgresql://benutzer@host:port/datenbank)</translation>
    </message>
    <message>
        <location line="+15"/>
        <source>The connection string names no database</source>
        <translation>Die Verbindungszeichenfolge nennt keine Datenbank</translation>
    </message>
    <message>
        <location line="+41"/>
        <source>The database driver %1 is not installed</source>
        <translation>Der Datenbanktreiber %1 ist nicht installiert</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>The database file %1 does not exist</source>
        <translation>Die Datenbankdatei %1 existiert nicht</translation>
    </message>
    <message>
        <location line="+34"/>
        <location line="+93"/>
        <source>Cannot connect to %1</source>
        <translation>Keine Verbindung zu %1 möglich</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>The connection to the server was lost and cannot be made again</source>
        <translation>Die Verbindung zum Server ist abgebrochen und kann nicht wiederhergestellt werden</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>The connection to the server was lost; the open transaction was rolled back</source>
        <translation>Die Verbindung zum Server ist abgebrochen; die offene Transaktion wurde zurückgesetzt</translation>
    </message>
    <message>
        <location line="+84"/>
        <source>A transaction is already active</source>
        <translation>Eine Transaktion ist bereits aktiv</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Cannot start a transaction</source>
        <translation>Eine Transaktion kann nicht gestartet werden</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>No transaction is active</source>
        <translation>Keine Transaktion aktiv</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Cannot commit the transaction</source>
        <translation>Die Transaktion kann nicht bestätigt werden</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Cannot roll the transaction back</source>
        <translation>Die Transaktion kann nicht zurückgesetzt werden</translation>
    </message>
</context>
<context>
    <name>qdb::TSQLQuery</name>
    <message>
        <location filename="../src/platform/sql/SQLEditing.cpp" line="+76"/>
        <source>No connection is set</source>
        <translation>Keine Verbindung festgelegt</translation>
    </message>
</context>
<context>
    <name>qdb::TSQLTable</name>
    <message>
        <location line="+56"/>
        <source>No table name is set</source>
        <translation>Kein Tabellenname festgelegt</translation>
    </message>
</context>
</TS>
