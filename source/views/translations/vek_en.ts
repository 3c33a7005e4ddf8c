<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>HeaderRow</name>
    <message numerus="yes">
        <source>%Ln transcripts without a customer</source>
        <translation>
            <numerusform>%Ln transcript without a customer</numerusform>
            <numerusform>%Ln transcripts without a customer</numerusform>
        </translation>
    </message>
</context>
</TS>
