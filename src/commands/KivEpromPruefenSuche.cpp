// The search commands suche, sucheErstes, sucheNaechstes and the byte
// checks built on the pattern search.
#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <vector>

#include "commands/KivEprom.h"
#include "commands/KivEpromArgumente.h"
#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "image/MusterSuche.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

namespace {

constexpr std::uint64_t letzteAdresse = 0xFFFFFFFF;

// Writes an address with five digits, "0"-filled, and leaves the fill as it
// was; the stream's base and case stay as the caller set them.
void schreibeAdresse(std::ostream& os, adrInteger adr) {
    char alt = os.fill('0');
    os << std::setw(5) << adr;
    os.fill(alt);
}

// The pattern as stored: through the byte array with its element limit.
std::vector<std::uint8_t> musterVon(const KivEprom& kiv) {
    std::vector<std::uint8_t> m;
    if (!kiv.suchMuster || kiv.suchLaenge <= 0) return m;
    m.reserve(static_cast<std::size_t>(kiv.suchLaenge));
    for (std::int32_t i = 0; i < kiv.suchLaenge; ++i) m.push_back((*kiv.suchMuster)[i]);
    return m;
}

}  // namespace

int KivEprom::setzeSuchMuster(const String& text, int hex) {
    String t = text;
    std::vector<std::uint8_t> bytes;
    const bool gut = leseMuster(t, hex, bytes);
    suchMuster = std::make_unique<DynArray<unsigned char>>(20, 0);
    suchLaenge = 0;
    if (!gut) return 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) (*suchMuster)[static_cast<std::int32_t>(i)] = bytes[i];
    suchLaenge = static_cast<std::int32_t>(bytes.size());
    return 1;
}

int KivEprom::sucheMuster(adrInteger von, adrInteger bis) {
    MusterSuche suche(*eprom, musterVon(*this), von, bis);
    adrInteger treffer = 0;
    const int gefunden = suche.naechster(treffer);
    suchAdresse = gefunden ? treffer : 0;
    return gefunden;
}

int KivEprom::pruefeBytes(adrInteger adresse, const String& text) {
    pruefeAdresse(adresse, "KivEprom::pruefeBytes");
    std::ostringstream meldung;
    meldung << "[" << std::hex << std::uppercase << std::setfill('0') << std::setw(6) << adresse << "]: ";

    // The running search keeps its pattern and position.
    auto altMuster = std::move(suchMuster);
    const std::int32_t altLaenge = suchLaenge;
    const adrInteger altAdresse = suchAdresse;

    String wert = text;
    wert.entferneHinten();
    int ergebnis;
    if (!setzeSuchMuster(wert, 1)) {
        Fehler("INVALID-CHECK-VALUE", "KivEprom::kdoPruefeByteFolge ", wert, 'E');
        ergebnis = 0;
    } else {
        const std::uint64_t ende =
            std::min<std::uint64_t>(std::uint64_t(adresse) + suchLaenge - 1, letzteAdresse);
        ergebnis = sucheMuster(adresse, static_cast<adrInteger>(ende));
        meldung << wert;
        Fehler(ergebnis ? "CHECK-BYTE-TRUE" : "CHECK-BYTE-FALSE", "KivEprom::kdoPruefeByte ", meldung, 'S');
    }

    suchMuster = std::move(altMuster);
    suchLaenge = altLaenge;
    suchAdresse = altAdresse;
    return ergebnis;
}

// ---------------------------------------------------------------------------
// Handlers

namespace {

// Reads the search text of suche and sucheErstes into the pattern; reports
// a refused one.
// Takes the search text of the command and starts the answer with `kopf`;
// null when the text is refused.
std::ostream* setzeSuche(KivEprom& kiv, KdoKommando& kommando, const char* kopf) {
    namespace arg = kdoArg::suche;
    String text = kommando[arg::suchText].liefereArgWertStr();
    const int hex = kommando[arg::darstellung].liefereArgWertInt() == 0;
    if (!kiv.setzeSuchMuster(text, hex)) {
        text.entferneHinten();
        Fehler("INVALID-SEARCH-VALUE", "KivEprom::kdoSuche ", text, 'E');
        return nullptr;
    }
    *kdoAnzeigeStream << std::hex << std::uppercase << kopf << "\n";
    return kdoAnzeigeStream;
}

// The answer of sucheErstes and sucheNaechstes: the first match in von..bis
// after `vorspann`, or that there is none.
int zeigeTreffer(std::ostream& os, KivEprom& kiv, adrInteger von, adrInteger bis, const char* vorspann) {
    if (kiv.sucheMuster(von, bis)) {
        os << vorspann;
        schreibeAdresse(os, kiv.suchAdresse);
        os << "] "
           << "\n";
        return 1;
    }
    os << "Muster nicht gefunden"
       << "\n";
    return 0;
}

}  // namespace

int kdoSuche(KdoObjekt& objekt, KdoKommando& kommando) {
    auto& kiv = static_cast<KivEprom&>(objekt);
    std::ostream* aus = setzeSuche(kiv, kommando, "Suchergebnis: ");
    if (!aus) return 0;
    std::ostream& os = *aus;

    // One walk for all matches: each next one is looked for from the byte
    // behind the last, so overlapping matches count.
    MusterSuche suche(*kiv.eprom, musterVon(kiv), kiv.eprom->liefereAnfAdr(), kiv.eprom->liefereEndAdr());
    std::uint64_t anzahl = 0;
    adrInteger treffer;
    while (suche.naechster(treffer)) {
        os << "[";
        schreibeAdresse(os, treffer);
        os << "] ";
        if (++anzahl % 8 == 0) os << "\n";
    }
    kiv.suchAdresse = 0;
    if (anzahl == 0)
        os << "Muster nicht gefunden"
           << "\n";
    else if (anzahl % 8 != 0)
        os << "\n";
    return 1;
}

int kdoSucheErstes(KdoObjekt& objekt, KdoKommando& kommando) {
    auto& kiv = static_cast<KivEprom&>(objekt);
    std::ostream* aus = setzeSuche(kiv, kommando, " ");
    if (!aus) return 0;
    return zeigeTreffer(*aus, kiv, kiv.eprom->liefereAnfAdr(), kiv.eprom->liefereEndAdr(),
                        "Erste Adresse: [");
}

int kdoSucheNaechstes(KdoObjekt& objekt, KdoKommando&) {
    auto& kiv = static_cast<KivEprom&>(objekt);
    if (!kiv.suchMuster || kiv.suchLaenge <= 0) return 0;
    // A search that failed left suchAdresse 0, so the next one starts at 1.
    const adrInteger von = kiv.suchAdresse + 1;
    const adrInteger bis = kiv.eprom->liefereEndAdr();
    std::ostream& os = *kdoAnzeigeStream;
    os << std::hex << std::uppercase << " "
       << "\n";
    if (bis < von) {
        os << "Epromende erreicht"
           << "\n";
        kiv.suchAdresse = 0;
        return 0;
    }
    return zeigeTreffer(os, kiv, von, bis, "Naechste Adresse: [");
}

int kdoPruefeByte(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::pruefeByte;
    auto& kiv = static_cast<KivEprom&>(objekt);
    const adrInteger adresse = kommando[arg::adresse].liefereArgWertIntHex();
    if (!KivEprom::pruefeAdresse(adresse, "KivEprom::kdoPruefeByte")) return 0;
    return kiv.pruefeBytes(adresse,
                           String(hex::text(kommando[arg::hexWert].liefereArgWertIntHex(), 1, false)));
}

int kdoPruefeBytefolge(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::pruefeBytefolge;
    auto& kiv = static_cast<KivEprom&>(objekt);
    const adrInteger adresse = kommando[arg::adresse].liefereArgWertIntHex();
    if (!KivEprom::pruefeAdresse(adresse, "KivEprom::kdoPruefeBytefolge")) return 0;
    return kiv.pruefeBytes(adresse, kommando[arg::bytefolge].liefereArgWertStr());
}
