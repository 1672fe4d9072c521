<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>KEZVisVectorText</name>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="120"/>
        <source>Bottom Left</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="121"/>
        <source>Bottom Middle</source>
        <translation>Unten Mitte</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="122"/>
        <source>Bottom Right</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="123"/>
        <source>Middle Left</source>
        <translation>Mitte links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="124"/>
        <source>Middle</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="125"/>
        <source>Middle Right</source>
        <translation>Mitte rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="126"/>
        <source>Top Left</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="127"/>
        <source>Top Middle</source>
        <translation>Oben Mitte</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="128"/>
        <source>Top Right</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="134"/>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="135"/>
        <source>center</source>
        <translation>zentriert</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="136"/>
        <source>right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="139"/>
        <source>Left To Right</source>
        <translation>Links nach rechts</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="140"/>
        <source>Right To Left</source>
        <translation>Rechts nach links</translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="141"/>
        <source>Invalid Orientation</source>
        <translation>Ungültige Ausrichtung</translation>
    </message>
</context>
</TS>
