#include "language/KdoParser.h"

#include <array>

#include "language/KdoGrammatik.h"
#include "language/KdoLaufzeit.h"

namespace {

using KdoAktionsFunktion = void (KdoParser::*)();

// Indexed by KdoAktion; the size check ties the two together.
constexpr std::array<KdoAktionsFunktion, static_cast<int>(KdoAktion::anzahl)> bindung = {
    nullptr,
    &KdoParser::anzeigeImFehlerfall,
    &KdoParser::anzeigeKdoObjekte,
    &KdoParser::ausfuehre,
    &KdoParser::exeOhneObjekt,
    &KdoParser::exeMitObjekt,
    &KdoParser::hilfeAllgemein,
    &KdoParser::imFehlerfallSetzen,
    &KdoParser::funktionswertSetzen,
    &KdoParser::ausfuehreKdoOTypCheck,
    &KdoParser::hilfeOhneObjekt,
    &KdoParser::hilfeMitObjekt,
    &KdoParser::ausfuehreTransDat,
    &KdoParser::ausfuehreTransOSp,
    &KdoParser::hilfeAnzeigeImFehlerfall,
    &KdoParser::hilfeAnzeigeKdoObjekte,
    &KdoParser::hilfeAusfuehreTrans,
    &KdoParser::hilfeAusfuehre,
    &KdoParser::hilfeExit,
    &KdoParser::hilfeImFehlerfall,
    &KdoParser::hilfeKdoOTypCheck,
    &KdoParser::hilfeUmsetze,
    &KdoParser::parameterLoeschen,
    &KdoParser::insertParam,
    &KdoParser::kdooVater,
    &KdoParser::kdooGeschwister,
    &KdoParser::kdooSohn,
    &KdoParser::imFehlerfallLoeschen,
    &KdoParser::funktionswertLoeschen,
    &KdoParser::modusNormal,
    &KdoParser::modusText,
    &KdoParser::statusExit,
    &KdoParser::statusReturn,
    &KdoParser::statusReturnMain,
    &KdoParser::modusZahl,
    &KdoParser::merkeWort,
    &KdoParser::merkeZahl,
    &KdoParser::setzeAktKdoObjekt,
    &KdoParser::merkeZiel,
    &KdoParser::merkeParameter,
    &KdoParser::merkeDatei,
    &KdoParser::merkeGrammatik,
    &KdoParser::setzeName,
    &KdoParser::umsetzeDat,
    &KdoParser::umsetzeOSp,
};

constexpr bool vollstaendig() {
    for (std::size_t i = 1; i < bindung.size(); ++i)
        if (!bindung[i]) return false;
    return true;
}
static_assert(vollstaendig(), "every action of the grammar is bound");

YAktion binde(int aktion) {
    if (aktion <= 0 || aktion >= static_cast<int>(bindung.size())) return nullptr;
    return static_cast<YAktion>(bindung[aktion]);
}

YTabelle baueTabelle() {
    const LalrTabelle& lalr = kdoTabelle();
    YTabelle y;
    for (const LalrTabellenRegel& r : lalr.regeln) y.regeln.push_back({r.links, r.laenge});
    for (const LalrZustand& z : lalr.zustaende) {
        YZustand yz;
        for (const LalrEintrag& e : z.aktionen) {
            YAktionsEintrag ye;
            ye.fehlerToken = e.token == KdoSymbol::FEHLER ? 1 : 0;
            ye.token = ye.fehlerToken ? 0 : e.token;
            ye.art = static_cast<signed char>(e.art);
            ye.ziel = e.ziel;
            ye.aktion = binde(e.aktion);
            yz.aktionen.push_back(ye);
        }
        for (const LalrGoto& g : z.gotos) yz.gotos.push_back({g.nichtTerminal, g.ziel});
        yz.defaultArt = static_cast<signed char>(z.defaultArt);
        yz.defaultRegel = z.defaultRegel;
        yz.defaultAktion = binde(z.defaultAktion);
        y.zustaende.push_back(std::move(yz));
    }
    return y;
}

}  // namespace

const YTabelle& KdoParser::tabelle() {
    static const YTabelle t = baueTabelle();
    return t;
}

KdoParser::KdoParser() : YParser(kdoScanner_, tabelle()) {}

KdoParser::~KdoParser() = default;

void KdoParser::oeffne(const String& name, std::istream& strom, dataInteger zeile) {
    kdoScanner_.oeffne(strom, zeile);
    setzeQuellName(name);
}

void KdoParser::modusNormal() { KdoLaufzeit::aktuelle().scannerModus = ScannerModus::Normal; }
void KdoParser::modusText() { KdoLaufzeit::aktuelle().scannerModus = ScannerModus::Text; }
void KdoParser::modusZahl() { KdoLaufzeit::aktuelle().scannerModus = ScannerModus::Zahl; }

void KdoParser::anzeigeImFehlerfall() {}
void KdoParser::anzeigeKdoObjekte() {}
void KdoParser::ausfuehre() {}
void KdoParser::exeOhneObjekt() {}
void KdoParser::exeMitObjekt() {}
void KdoParser::hilfeAllgemein() {}
void KdoParser::imFehlerfallSetzen() {}
void KdoParser::funktionswertSetzen() {}
void KdoParser::ausfuehreKdoOTypCheck() {}
void KdoParser::hilfeOhneObjekt() {}
void KdoParser::hilfeMitObjekt() {}
void KdoParser::ausfuehreTransDat() {}
void KdoParser::ausfuehreTransOSp() {}
void KdoParser::hilfeAnzeigeImFehlerfall() {}
void KdoParser::hilfeAnzeigeKdoObjekte() {}
void KdoParser::hilfeAusfuehreTrans() {}
void KdoParser::hilfeAusfuehre() {}
void KdoParser::hilfeExit() {}
void KdoParser::hilfeImFehlerfall() {}
void KdoParser::hilfeKdoOTypCheck() {}
void KdoParser::hilfeUmsetze() {}
void KdoParser::parameterLoeschen() {}
void KdoParser::insertParam() {}
void KdoParser::kdooVater() {}
void KdoParser::kdooGeschwister() {}
void KdoParser::kdooSohn() {}
void KdoParser::imFehlerfallLoeschen() {}
void KdoParser::funktionswertLoeschen() {}
void KdoParser::statusExit() {}
void KdoParser::statusReturn() {}
void KdoParser::statusReturnMain() {}
void KdoParser::merkeWort() {}
void KdoParser::merkeZahl() {}
void KdoParser::setzeAktKdoObjekt() {}
void KdoParser::merkeZiel() {}
void KdoParser::merkeParameter() {}
void KdoParser::merkeDatei() {}
void KdoParser::merkeGrammatik() {}
void KdoParser::setzeName() {}
void KdoParser::umsetzeDat() {}
void KdoParser::umsetzeOSp() {}
