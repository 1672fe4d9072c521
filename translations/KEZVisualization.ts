<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
<context>
    <name>KEZVisVectorText</name>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="120"/>
        <source>Bottom Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="121"/>
        <source>Bottom Middle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="122"/>
        <source>Bottom Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="123"/>
        <source>Middle Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="124"/>
        <source>Middle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="125"/>
        <source>Middle Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="126"/>
        <source>Top Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="127"/>
        <source>Top Middle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="128"/>
        <source>Top Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="134"/>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="135"/>
        <source>center</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="136"/>
        <source>right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="139"/>
        <source>Left To Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="140"/>
        <source>Right To Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../src/text/KEZVisVectorText.cpp" line="141"/>
        <source>Invalid Orientation</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
