<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>StateText</name>
    <message numerus="yes">
        <source>%n tracks</source>
        <translation>
            <numerusform>%n track</numerusform>
            <numerusform>%n tracks</numerusform>
        </translation>
    </message>
</context>
</TS>
