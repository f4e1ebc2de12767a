// KdoParser: the parser of the command language, with the command scanner
// and the tables of KdoGrammatik.
//
// Every semantic action of the grammar is a virtual operation here. They do
// nothing, except the three mode switches, which set the scanner mode: the
// scanner and the grammar only work together if those run. The Compiler
// derives from this class and gives the others their meaning.
//
// Use: `oeffne(name, strom, zeile)`, then `parse()`, once per logical line.
#pragma once

#include <iosfwd>

#include "language/Scanner.h"
#include "language/YParser.h"

class KdoParser : public YParser {
public:
    KdoParser();
    ~KdoParser() override;

    // Opens the scanner on `strom` (not owned) with `zeile` as the number of
    // the first line, and keeps `name` as the source name for messages.
    void oeffne(const String& name, std::istream& strom, dataInteger zeile);

    KdoScanner& liefereKdoScanner() { return kdoScanner_; }

    // The tables of the language, bound to these operations; built once.
    static const YTabelle& tabelle();

    // Semantic actions; see KdoGrammatik.cpp for where each one runs.
    virtual void anzeigeImFehlerfall();
    virtual void anzeigeKdoObjekte();
    virtual void ausfuehre();
    virtual void exeOhneObjekt();
    virtual void exeMitObjekt();
    virtual void hilfeAllgemein();
    virtual void imFehlerfallSetzen();
    virtual void funktionswertSetzen();
    virtual void ausfuehreKdoOTypCheck();
    virtual void hilfeOhneObjekt();
    virtual void hilfeMitObjekt();
    virtual void ausfuehreTransDat();
    virtual void ausfuehreTransOSp();
    virtual void hilfeAnzeigeImFehlerfall();
    virtual void hilfeAnzeigeKdoObjekte();
    virtual void hilfeAusfuehreTrans();
    virtual void hilfeAusfuehre();
    virtual void hilfeExit();
    virtual void hilfeImFehlerfall();
    virtual void hilfeKdoOTypCheck();
    virtual void hilfeUmsetze();
    virtual void parameterLoeschen();
    virtual void insertParam();
    virtual void kdooVater();
    virtual void kdooGeschwister();
    virtual void kdooSohn();
    virtual void imFehlerfallLoeschen();
    virtual void funktionswertLoeschen();
    virtual void modusNormal();  // ScannerModus::Normal
    virtual void modusText();    // ScannerModus::Text
    virtual void statusExit();
    virtual void statusReturn();
    virtual void statusReturnMain();
    virtual void modusZahl();  // ScannerModus::Zahl
    virtual void merkeWort();
    virtual void merkeZahl();
    virtual void setzeAktKdoObjekt();
    virtual void merkeZiel();
    virtual void merkeParameter();
    virtual void merkeDatei();
    virtual void merkeGrammatik();
    virtual void setzeName();
    virtual void umsetzeDat();
    virtual void umsetzeOSp();

private:
    KdoScanner kdoScanner_;
};
