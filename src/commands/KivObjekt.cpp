#include "commands/KivObjekt.h"

#include <cctype>
#include <new>
#include <string>
#include <vector>

#include "commands/KivEprom.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "reporting/Fehler.h"

KivObjekt* kivWurzel = nullptr;
KdoListe* kivObjektListe = nullptr;

namespace {

const char* const schliesseFunktion = "KivEprom::kdoSchliesse ";
// The longest word the commands read as an image name.
constexpr std::size_t maxNamenLaenge = 32;

String dezimal(std::int32_t wert) { return String(static_cast<dataInteger>(wert)); }

}  // namespace

KivObjekt::KivObjekt(const String& name, const String& vollerName)
    : KdoObjekt(name, vollerName), epromListe(std::make_unique<Liste>(1, "Eprom-Liste")) {}

// The list owns the images; each one leaves the tree as it dies.
KivObjekt::~KivObjekt() = default;

KdoListe* KivObjekt::liefereKdoListe() { return kivObjektListe; }

const String& KivObjekt::liefereKdoOTyp() const {
    static const String typ("Kiv");
    return typ;
}

KivEprom* KivObjekt::neuesEprom(const DateiName& datei) {
    String name;
    if (datei.liefereGanz() != "/") {
        name = datei.liefereName();
        if (!datei.liefereExtension().istLeer()) name += "_" + datei.liefereExtension();
    }
    if (name.istLeer()) {
        name = "Neu" + dezimal(neuZaehler);
        ++neuZaehler;
    }
    name.ersetzeZeichen('.', '_');
    // A name must stay addressable: as a word of at most 32 characters in
    // the commands that take an image name, and as an object name before
    // ":", which knows letters, digits and "_" only. A file name with other
    // characters or of more length gives a name repaired to fit, and the
    // user is told which.
    const String ueblich = name;
    std::string passend = name.str();
    for (char& z : passend) {
        const unsigned char u = static_cast<unsigned char>(z);
        const bool ascii = u < 0x80;
        if (!(ascii && (std::isalnum(u) || z == '_'))) z = '_';
    }
    if (passend.size() > maxNamenLaenge) passend.resize(maxNamenLaenge);
    name = String(passend);
    // The number grows on the name itself ("a_hex", "a_hex2", "a_hex23"):
    // intended, names stay unique without a second counter.
    while (sucheEprom(name)) {
        const std::string zahl = dezimal(neuZaehler).str();
        std::string naechster = name.str();
        if (naechster.size() + zahl.size() > maxNamenLaenge) naechster.resize(maxNamenLaenge - zahl.size());
        name = String(naechster + zahl);
        ++neuZaehler;
    }
    if (!(ueblich == String(passend)))
        Fehler("EPROM-NAME-REPAIRED", "KivObjekt::neuesEprom", ueblich + " -> " + name, 'W');

    auto kiv = std::make_unique<KivEprom>(name);
    if (!epromListe->anfuegeElement(kiv.get(), ListenSuche::MELDEN)) return nullptr;
    KivEprom* neu = kiv.release();
    neu->aktDatei = std::make_unique<DateiName>(datei);
    if (kdoBaum()) kdoBaum()->fuegeEin(neu);
    return neu;
}

KivEprom* KivObjekt::sucheEprom(const String& name) {
    ListenElement* e =
        epromListe->sucheElementF(name, ListenSuche::JEDE_AUSWAHL, ListenSuche::STILL, ListenSuche::EXAKT);
    return e ? static_cast<KivEprom*>(e) : nullptr;
}

int KivObjekt::entferneEprom(KivEprom* kivEprom) {
    if (!kivEprom || sucheEprom(kivEprom->liefereName()) != kivEprom) return 0;
    return epromListe->entferneAktuell() == kivEprom ? 1 : 0;
}

int KivObjekt::schliesse(const String& name, int immer) {
    KdoObjektBasis* objekt = kdoBaum() ? kdoBaum()->suche(name, 0) : nullptr;
    // The name may lead to the root itself or another object that is not an
    // open image; that is no image to close.
    KivEprom* kiv = dynamic_cast<KivEprom*>(objekt);
    if (!kiv || sucheEprom(kiv->liefereName()) != kiv) {
        Fehler("EPROM-NOT-EXIST", schliesseFunktion, name, 'E');
        return 0;
    }
    if (kiv->geaendert == 1) {
        if (immer != 1) {
            Fehler("CHANGED-EPROM-NOT-CLOSED", schliesseFunktion, name, 'W');
            return 1;
        }
        Fehler("CHANGED-EPROM-CLOSED", schliesseFunktion, name, 'W');
    }
    const int entfernt = kdoBaum()->entferne(kiv);
    if (entfernt != 1) return entfernt;
    const int ergebnis = entferneEprom(kiv);
    if (ergebnis <= 0) return ergebnis;
    delete kiv;
    return 1;
}

int KivObjekt::pruefeGeaendert(int melden) {
    String namen;
    int gefunden = 0;
    ListenIterator it(*epromListe);
    while (ListenElement* e = it.naechstes()) {
        KivEprom* kiv = static_cast<KivEprom*>(e);
        if (kiv->geaendert != 1) continue;
        if (gefunden) namen += '\n';
        namen += kiv->liefereName();
        gefunden = 1;
    }
    if (gefunden && melden == 1)
        Fehler("EPROM-CHANGED-AND-NOT-SAVED", "KivObjekt::pruefeGeaendert ", namen, 'W');
    return gefunden;
}

// ---------------------------------------------------------------------------
// Signatures and named argument positions of the root's commands

namespace kdoArg {
namespace {

using T = KdoArgTyp;

namespace oeffne {
constexpr const char* signatur =
    "Enum{Intel,Motorola,Binaer} dateiTyp\t\t\t DateiName epromDatei\t\t\t "
    "BoolIntegerHex\tstartAdresse\t\t\t "
    "BoolIntegerHex endAdresse\t\t\t BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellbyte\t\t\t "
    "Bool bytesPruefen\t\t\t Bool swap";
constexpr ArgPos<T::Enum> dateiTyp{0};
constexpr ArgPos<T::DateiName> epromDatei{1};
constexpr ArgPos<T::BoolIntegerHex> startAdresse{2}, endAdresse{3}, externeAdresse{4}, fuellbyte{5};
constexpr ArgPos<T::Bool> bytesPruefen{6}, swap{7};
constexpr KdoArgDekl positionen[] = {dateiTyp,       epromDatei, startAdresse, endAdresse,
                                     externeAdresse, fuellbyte,  bytesPruefen, swap};
}  // namespace oeffne

namespace neu {
constexpr const char* signatur = "DateiName dateiName ";
constexpr ArgPos<T::DateiName> dateiName{0};
constexpr KdoArgDekl positionen[] = {dateiName};
}  // namespace neu

namespace schliesse {
constexpr const char* signatur = "Wort epromName\t\t\t Bool schliesseImmer";
constexpr ArgPos<T::Wort> epromName{0};
constexpr ArgPos<T::Bool> schliesseImmer{1};
constexpr KdoArgDekl positionen[] = {epromName, schliesseImmer};
}  // namespace schliesse

namespace schliesseAlle {
constexpr const char* signatur = "Bool schliesseImmer";
constexpr ArgPos<T::Bool> schliesseImmer{0};
constexpr KdoArgDekl positionen[] = {schliesseImmer};
}  // namespace schliesseAlle

}  // namespace
}  // namespace kdoArg

// ---------------------------------------------------------------------------
// Handlers

int kdoOeffne(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::oeffne;
    KivObjekt& wurzel = static_cast<KivObjekt&>(objekt);
    static const std::int32_t typen[] = {EpromDatei::typIntel, EpromDatei::typMotorola,
                                         EpromDatei::typBinaer};
    const dataInteger wahl = kommando[arg::dateiTyp].liefereArgWertInt();
    const std::int32_t typ = typen[wahl >= 0 && wahl < 3 ? wahl : 0];
    const DateiName datei = kommando[arg::epromDatei].liefereArgWertDatei();
    if (datei.liefereGanz() == "/") return 0;

    KivEprom* kiv = wurzel.neuesEprom(datei);
    if (!kiv) return 0;
    const adrInteger* start = optionaleAdresse(kommando, arg::startAdresse);
    const adrInteger* ende = optionaleAdresse(kommando, arg::endAdresse);
    const adrInteger* extern_ = optionaleAdresse(kommando, arg::externeAdresse);
    const adrInteger fuell = kommando[arg::fuellbyte].liefereArgWertBool() == 1
                                 ? kommando[arg::fuellbyte].liefereArgWertIntHex()
                                 : 0;
    const int pruefen = kommando[arg::bytesPruefen].liefereArgWertBool();
    const int tausche = kommando[arg::swap].liefereArgWertBool();

    const auto verwirf = [&] {
        const String name = kiv->liefereName();
        if (kdoBaum()) kdoBaum()->vater();
        wurzel.schliesse(name, 1);
    };
    int ergebnis;
    try {
        ergebnis = kiv->leseVonDatei(datei, typ, 16, tausche, fuell, pruefen, start, ende, extern_);
    } catch (const std::bad_alloc&) {
        // The half-read image goes again, and with it the memory it took;
        // the command reports the shortage.
        kiv->geaendert = 0;
        verwirf();
        throw;
    }
    // A freshly opened image matches its file, whatever the load said.
    kiv->geaendert = 0;
    if (ergebnis != 1) verwirf();
    return ergebnis;
}

int kdoNeu(KdoObjekt& objekt, KdoKommando& kommando) {
    KivObjekt& wurzel = static_cast<KivObjekt&>(objekt);
    return wurzel.neuesEprom(kommando[kdoArg::neu::dateiName].liefereArgWertDatei()) ? 1 : 0;
}

int kdoSchliesse(KdoObjekt& objekt, KdoKommando& kommando) {
    KivObjekt& wurzel = static_cast<KivObjekt&>(objekt);
    namespace arg = kdoArg::schliesse;
    return wurzel.schliesse(kommando[arg::epromName].liefereArgWertStr(),
                            kommando[arg::schliesseImmer].liefereArgWertBool());
}

int kdoSchliesseAlle(KdoObjekt& objekt, KdoKommando& kommando) {
    KivObjekt& wurzel = static_cast<KivObjekt&>(objekt);
    const int immer = kommando[kdoArg::schliesseAlle::schliesseImmer].liefereArgWertBool();
    // Closing changes the list; walk over a copy of the names.
    std::vector<String> namen;
    ListenIterator it(wurzel.liefereEpromListe());
    while (ListenElement* e = it.naechstes()) namen.push_back(e->liefereName());
    int ergebnis = 1;
    for (const String& name : namen)
        if (wurzel.schliesse(name, immer) == 0) ergebnis = 0;
    return ergebnis;
}

// ---------------------------------------------------------------------------
// Command list of the root

namespace {

const KdoEintrag tabelle[] = {
    {"oeffne", kdoArg::oeffne::signatur, kdoOeffne, "oeffne(Intel, /, /, /, /, /, YES, NO)",
     kdoArg::oeffne::positionen},
    {"neu", kdoArg::neu::signatur, kdoNeu, "neu(/)", kdoArg::neu::positionen},
    {"schliesse", kdoArg::schliesse::signatur, kdoSchliesse, "schliesse( , NO)",
     kdoArg::schliesse::positionen},
    {"schliesseAlle", kdoArg::schliesseAlle::signatur, kdoSchliesseAlle, "schliesseAlle(NO)",
     kdoArg::schliesseAlle::positionen},
};

}  // namespace

void bauKivObjektListe() {
    delete kivObjektListe;
    kivObjektListe = new KdoListe("KivObjekt");
    kivObjektListe->fuegeEin(tabelle);
}

std::span<const KdoEintrag> kivObjektTabelle() { return tabelle; }
