<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>KEZVisVectorText</name>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="94"/>
        <source>Bottom Left</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="95"/>
        <source>Bottom Middle</source>
        <translation>Unten Mitte</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="96"/>
        <source>Bottom Right</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="97"/>
        <source>Middle Left</source>
        <translation>Mitte links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="98"/>
        <source>Middle</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="99"/>
        <source>Middle Right</source>
        <translation>Mitte rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="100"/>
        <source>Top Left</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="101"/>
        <source>Top Middle</source>
        <translation>Oben Mitte</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="102"/>
        <source>Top Right</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="108"/>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="109"/>
        <source>center</source>
        <translation>zentriert</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="110"/>
        <source>right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="113"/>
        <source>Left To Right</source>
        <translation>Links nach rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="114"/>
        <source>Right To Left</source>
        <translation>Rechts nach links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="115"/>
        <source>Invalid Orientation</source>
        <translation>Ungültige Ausrichtung</translation>
    </message>
</context>
</TS>
