#include "image/EpromDatei.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <ostream>
#include <sstream>
#include <string_view>

#include "foundation/Datei.h"
#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "image/HexText.h"
#include "image/HexZeile.h"
#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"

using hextext::klein;

std::int32_t EpromDatei::zeilenNr = 0;
String EpromDatei::zeilenDatei;

namespace {

const char* const fmtLabel = "HEXFILE-FMT";
constexpr std::size_t blockGroesse = 1 << 16;

// Reads a stream in blocks and hands out its lines. A line longer than 132
// characters comes in pieces of 132, each a line of its own; a line of
// exactly 132 keeps its newline. The last line needs no newline. A line ends
// at its first NUL byte, as a text would.
class ZeilenLeser {
public:
    static constexpr std::size_t maxZeile = 132;

    explicit ZeilenLeser(std::istream& strom) : strom_(strom), puffer_(new char[blockGroesse]) {}

    bool naechste(std::string_view& zeile) {
        std::size_t n = 0;
        for (;;) {
            if (pos_ == ende_ && !fuelle()) {
                if (n == 0) return false;
                return liefere(zeile, n);
            }
            std::size_t nimm = std::min(ende_ - pos_, maxZeile - n);
            const char* nl = static_cast<const char*>(std::memchr(puffer_.get() + pos_, '\n', nimm));
            if (nl && n == 0) {
                // The whole line lies in the block: hand it out from there.
                const char* anfang = puffer_.get() + pos_;
                std::size_t k = static_cast<std::size_t>(nl - anfang);
                pos_ += k + 1;
                zeile = std::string_view(anfang, strnlen(anfang, k));
                return true;
            }
            if (nl) {
                std::size_t k = static_cast<std::size_t>(nl - (puffer_.get() + pos_));
                std::memcpy(zeile_ + n, puffer_.get() + pos_, k);
                pos_ += k + 1;
                return liefere(zeile, n + k);
            }
            std::memcpy(zeile_ + n, puffer_.get() + pos_, nimm);
            n += nimm;
            pos_ += nimm;
            if (n == maxZeile) {
                if (pos_ == ende_ && !fuelle()) return liefere(zeile, n);
                if (puffer_[pos_] == '\n') ++pos_;
                return liefere(zeile, n);
            }
        }
    }

private:
    bool fuelle() {
        if (fertig_) return false;
        strom_.read(puffer_.get(), blockGroesse);
        ende_ = static_cast<std::size_t>(strom_.gcount());
        pos_ = 0;
        if (!strom_) fertig_ = true;
        return ende_ > 0;
    }
    bool liefere(std::string_view& zeile, std::size_t n) {
        zeile = std::string_view(zeile_, strnlen(zeile_, n));
        return true;
    }

    std::istream& strom_;
    std::unique_ptr<char[]> puffer_;
    std::size_t pos_ = 0, ende_ = 0;
    bool fertig_ = false;
    char zeile_[maxZeile + 1];
};

char zeichenAn(std::string_view z, std::size_t i) { return i < z.size() ? z[i] : '\0'; }

// Counts the lines of a hex file, read or written, for the context line and
// the progress marks.
class ZeilenZaehler {
public:
    explicit ZeilenZaehler(const char* text) : fortschritt_(100, String(text)) {}
    void operator()() {
        ++EpromDatei::zeilenNr;
        fortschritt_ += 1;
    }

private:
    BearbeitungsFortschritt fortschritt_;
};

void beginneKontext(const DateiName& datei) {
    EpromDatei::zeilenNr = 0;
    EpromDatei::zeilenDatei = datei.liefereGanz();
    Fehler::zusatzZeile = &EpromDatei::liefereZeilenPosition;
}

String zeilenText(std::string_view z) { return String(z); }

// The messages that a line of a hex file can give besides "HEXFILE-FMT" are
// capped in the same way, so that a file of many bad lines gives a handful
// of boxes and a count instead of one box per line. The count comes only
// where something was held back.
class ZeilenMeldungen {
public:
    explicit ZeilenMeldungen(const char* funktion) : funktion_(funktion) {
        for (const Grenze& g : grenzen) Fehler::begrenzeAusgabe(g.label, 5, g.level, 1);
    }
    ~ZeilenMeldungen() {
        for (const Grenze& g : grenzen) {
            const std::int64_t gesehen = Fehler::liefereBegrenzungsZaehler(g.label);
            Fehler::hebeBegrenzungAuf(g.label);
            if (gesehen > 5)
                Fehler(String(g.label) + "-COUNT", funktion_,
                       String("COUNT: " + klein(std::uint32_t(gesehen))), 'W');
        }
    }
    ZeilenMeldungen(const ZeilenMeldungen&) = delete;
    ZeilenMeldungen& operator=(const ZeilenMeldungen&) = delete;

private:
    struct Grenze {
        const char* label;
        char level;
    };
    static constexpr Grenze grenzen[] = {
        {"HEXFILE-NOINTEL-FMT", 'W'}, {"HEXFILE-NOMOTOROLA-FMT", 'W'}, {"HEXFILE-BYTECOUNT", 'W'},
        {"HEXFILE-CHKSUM", 'W'},      {"HEXFILE-ADR-WRAP", 'W'},       {"EPR-ADR-NOT-IN-EPROM", 'E'},
    };
    const char* funktion_;
};

// The frame both text readers share: the file is opened quietly, line
// messages name it, the format messages are capped at five, and lines and bad
// lines are counted. `zeile(z, leser, sammler, fmt)` takes one line and
// answers false to stop reading; `fmt()` reports the line as malformed.
// `abschluss()` runs before the count of malformed lines is reported.
template <class Zeile, class Abschluss>
int liesZeilen(Eprom& eprom, const DateiName& datei, const char* funktion, const char* zaehlerText,
               Zeile&& zeile, Abschluss&& abschluss) {
    std::uint32_t fehlZeilen = 0;
    IDatei eingabe(datei);
    if (!eingabe.oeffneStill()) return 0;
    beginneKontext(datei);
    Fehler::begrenzeAusgabe(fmtLabel, 5, 'W', 1);
    {
        const ZeilenMeldungen meldungen(funktion);
        ZeilenZaehler zaehle(zaehlerText);
        ZeilenLeser leser(*eingabe.liefereStrom());
        EpromSammler sammler(eprom);
        std::string_view z;
        auto fmt = [&] {
            Fehler(fmtLabel, funktion, zeilenText(z), 'W');
            ++fehlZeilen;
        };
        while (leser.naechste(z)) {
            zaehle();
            if (!zeile(z, leser, sammler, fmt)) break;
        }
    }
    abschluss();
    if (fehlZeilen) Fehler("HEXFILE-FMT-COUNT", funktion, String("COUNT: " + klein(fehlZeilen)), 'W');
    Fehler::hebeBegrenzungAuf(fmtLabel);
    eingabe.schliesseStill();
    Fehler::zusatzZeile = nullptr;
    return 1;
}

}  // namespace

EpromDatei::~EpromDatei() = default;

String EpromDatei::liefereZeilenPosition() {
    return zeilenDatei + ": " + " Zeile " + String(std::to_string(zeilenNr));
}

bool EpromDatei::pruefeBereich(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                               adrInteger& von, adrInteger& bis, const char* funktion) {
    adrInteger anfEpr = eprom.liefereAnfAdr(), endEpr = eprom.liefereEndAdr();
    std::ostringstream t;
    t << std::hex;
    if (startAdresse && *startAdresse < anfEpr)
        t << *startAdresse << " < "
          << "[" << anfEpr << " ... " << endEpr << "]"
          << "\n";
    if (endAdresse && *endAdresse > endEpr)
        t << "[" << anfEpr << " ... " << endEpr << "]"
          << " < " << *endAdresse << "\n";
    von = startAdresse ? *startAdresse : anfEpr;
    bis = endAdresse ? *endAdresse : endEpr;
    if (bis < von) t << von << " > " << bis << "\n";
    if (t.tellp() == 0) return true;
    Fehler("HEXFILE-ADR", funktion, String(t.str()), 'E');
    return false;
}

int EpromDatei::schreibe(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                         const adrInteger* externeAdresse) {
    if (dateiTyp_ == typBinaer)
        if (auto* binaer = dynamic_cast<EpromDateiBinaer*>(this))
            return binaer->schreibe(eprom, startAdresse, endAdresse, externeAdresse);

    ODatei ausgabe(datei_);
    if (!ausgabe.oeffneStill()) return 0;
    beginneKontext(datei_);
    adrInteger von, bis;
    int ergebnis = 0;
    if (pruefeBereich(eprom, startAdresse, endAdresse, von, bis, "EpromDatei::schreibe")) {
        ergebnis = schreibe(eprom, *ausgabe.liefereStrom(), von, bis, externeAdresse);
        // A failed line has been reported by its writer; a failed write is
        // reported when the file cannot be completed.
        if (ergebnis || !ausgabe.liefereStrom()->good())
            ergebnis = ausgabe.beende("EpromDatei::schreibe") && ergebnis;
    }
    ausgabe.schliesseStill();
    Fehler::zusatzZeile = nullptr;
    return ergebnis;
}

// ===================================================================
// Intel
// ===================================================================

int EpromDateiIntel::lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                          const adrInteger* externeAdresse) {
    const char* funktion = "EpromDateiIntel::lies";
    adrInteger kleinste = std::min(eprom.liefereAnfAdr(), eprom.liefereEndAdr());
    if (externeAdresse && !startAdresse) startAdresse = &kleinste;
    extAdr = 0;
    bool endeGefunden = false;
    auto zeile = [&](std::string_view& z, ZeilenLeser& leser, EpromSammler& sammler, auto& fmt) {
        if (zeichenAn(z, 0) != ':' || zeichenAn(z, 7) != '0') {
            fmt();
            return true;
        }
        switch (zeichenAn(z, 8)) {
        case '0':
            // A damaged data line costs its own message only.
            IntelHexZeileDaten(z).speichere(eprom, extAdr, startAdresse, endAdresse, externeAdresse,
                                            &sammler);
            break;
        case '1':
            if (IntelHexZeileEnde(z).zerlege()) {
                endeGefunden = true;
                if (leser.naechste(z)) {
                    ++zeilenNr;
                    Fehler("HEXFILE-TEXT-BEHIND-END", funktion, zeilenText(z), 'W');
                }
            }
            break;
        case '2': IntelHexZeileSegment(z).liefereBasis(extAdr); break;
        case '4': IntelHexZeileLinear(z).liefereBasis(extAdr); break;
        default: fmt(); break;
        }
        return !endeGefunden;
    };
    return liesZeilen(eprom, datei_, funktion, "Intel-Hex-Zeilen", zeile, [&] {
        if (!endeGefunden) Fehler("HEXFILE-END-RECORD-MISSING", funktion, "", 'W');
    });
}

int EpromDateiIntel::schreibe(Eprom& eprom, std::ostream& os, adrInteger von, adrInteger bis,
                              const adrInteger* externeAdresse) {
    os << std::hex << std::uppercase;
    extAdr = 0;
    if (nutzBytes == 0) {
        Fehler("INVALID-VALUE", "EpromDateiIntel::schreibe", "nutzBytes 0", 'E');
        return 0;
    }
    ZeilenZaehler zaehle("Intel-Hex-Zeilen");
    int ergebnis = 1;
    bool lang = false;
    auto dateiAdr = [&](adrInteger a) { return externeAdresse ? a + (*externeAdresse - von) : a; };
    // Data lines collect in one buffer; the other records go straight to the
    // stream, after what is collected.
    HexAusgabe aus(os, true);
    EpromLeser leser(eprom);
    IntelHexZeileDaten datenZeile;  // one for all lines: a fresh one costs clearing its bytes
    auto erweiterung = [&](adrInteger f) {
        aus.leere();
        if (lang)
            schreibeLinearZeile(os, f, extAdr);
        else
            schreibeSegmentZeile(os, f, extAdr);
        zaehle();
    };

    adrInteger rv, rb;
    if (eprom.liefereBereich(von, rv, rb)) {
        rb = std::min(rb, bis);
        adrInteger letzte = dateiAdr(bis);
        if (letzte >= 0x10000 || extErzwingen) {
            if (letzte > 0xFFFFF) lang = true;
            erweiterung(0);
        }
        for (bool erste = true;; erste = false) {
            // A later region that bis cuts is left out whole, unlike in the
            // Motorola writer; intended.
            if (!erste && bis < rb) break;
            if (rv <= rb) {
                for (adrInteger a = rv;;) {
                    adrInteger f = dateiAdr(a);
                    if (std::uint64_t(f) > std::uint64_t(extAdr) + 0xFFFF) {
                        if (f > 0xFFFFF) lang = true;
                        erweiterung(f);
                    }
                    std::uint32_t n = nutzBytes - f % nutzBytes;
                    if (std::uint64_t(a) + nutzBytes - 1 > rb) n = rb - a + 1;
                    ergebnis = datenZeile.schreibe(aus, leser, a, n, extAdr, &von, externeAdresse);
                    zaehle();
                    if (std::uint64_t(a) + n > rb) break;
                    a += n;
                }
            }
            if (rb == 0xFFFFFFFF || !eprom.liefereBereich(rb + 1, rv, rb)) break;
        }
    }
    aus.leere();
    os << ":00000001FF\n";
    return os.good() ? ergebnis : 0;
}

// ===================================================================
// Motorola
// ===================================================================

EpromDateiMotorola::EpromDateiMotorola(const DateiName& name, std::uint32_t bytesJeZeile)
    : EpromDatei(name, typMotorola), nutzBytes(bytesJeZeile) {}

EpromDateiMotorola::~EpromDateiMotorola() = default;

int EpromDateiMotorola::lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                             const adrInteger* externeAdresse) {
    const char* funktion = "EpromDateiMotorola::lies";
    int status = 1;
    auto zeile = [&](std::string_view& z, ZeilenLeser&, EpromSammler& sammler, auto& fmt) {
        if (zeichenAn(z, 0) != 'S' || z.size() < 10) {
            fmt();
            return true;
        }
        switch (z[1]) {
        case '0':
            kopfZeile = std::make_unique<MotorolaHexZeileKopf>(z);
            if (kopfZeile->zerlege()) return true;
            kopfZeile = std::make_unique<MotorolaHexZeileKopf>();
            status = kopfZeile->zerlege();
            break;
        case '1':
            status =
                MotorolaHexZeileS1(z).speichere(eprom, startAdresse, endAdresse, externeAdresse, &sammler);
            break;
        case '2':
            status =
                MotorolaHexZeileS2(z).speichere(eprom, startAdresse, endAdresse, externeAdresse, &sammler);
            break;
        case '3':
            status =
                MotorolaHexZeileS3(z).speichere(eprom, startAdresse, endAdresse, externeAdresse, &sammler);
            break;
        case '7': status = MotorolaHexZeileS7(z).zerlege(); break;
        case '8': status = MotorolaHexZeileS8(z).zerlege(); break;
        case '9': status = MotorolaHexZeileS9(z).zerlege(); break;
        default:
            // status keeps the value of the line before; intended, so a
            // bad line behind a bad line is counted twice.
            fmt();
            break;
        }
        // A damaged line costs two messages here: its own and this one.
        if (!status) fmt();
        return true;
    };
    return liesZeilen(eprom, datei_, funktion, "Motorola-Hex-Zeilen", zeile, [] {});
}

int EpromDateiMotorola::schreibe(Eprom& eprom, std::ostream& os, adrInteger von, adrInteger bis,
                                 const adrInteger* externeAdresse) {
    std::int32_t gemerkt = modus;
    if (modus == DYN) modus = S1S9;
    os << std::hex << std::uppercase;
    if (nutzBytes == 0) {
        Fehler("INVALID-VALUE", "EpromDateiMotorola::schreibe", "nutzBytes 0", 'E');
        modus = gemerkt;
        return 0;
    }
    int ergebnis = 1;
    {
        ZeilenZaehler zaehle("Motorola-Hex-Zeilen");
        adrInteger rv, rb;
        if (eprom.liefereBereich(von, rv, rb)) {
            adrInteger delta = externeAdresse ? *externeAdresse - von : 0;
            adrInteger limit = bis;
            if (externeAdresse && *externeAdresse > von && std::uint64_t(bis) + delta > 0xFFFFFFFF)
                limit = 0xFFFFFFFF - delta;
            if (!kopfZeile) {
                kopfZeile = std::make_unique<MotorolaHexZeileKopf>();
                kopfZeile->zerlege();
            }
            kopfZeile->schreibe(os);
            zaehle();
            HexAusgabe aus(os, true);
            EpromLeser leser(eprom);
            MotorolaHexZeileS1 s1;
            MotorolaHexZeileS2 s2;
            MotorolaHexZeileS3 s3;
            while (rv <= limit) {
                rb = std::min(rb, limit);
                if (rv <= rb) {
                    for (adrInteger a = rv;;) {
                        adrInteger f = a + delta;
                        if ((modus == S1S9 && f >= 0x10000) || (modus == S2S8 && f >= 0x1000000)) aus.leere();
                        if (modus == S1S9 && f >= 0x10000) {
                            MotorolaHexZeileS9().schreibe(os);
                            zaehle();
                            modus = S2S8;
                        }
                        if (modus == S2S8 && f >= 0x1000000) {
                            MotorolaHexZeileS8().schreibe(os);
                            zaehle();
                            modus = S3S7;
                        }
                        std::uint32_t n = nutzBytes - f % nutzBytes;
                        if (std::uint64_t(a) + nutzBytes - 1 > rb) n = rb - a + 1;
                        if (modus == S2S8)
                            ergebnis = s2.schreibe(aus, leser, a, f, n);
                        else if (modus == S3S7)
                            ergebnis = s3.schreibe(aus, leser, a, f, n);
                        else
                            ergebnis = s1.schreibe(aus, leser, a, f, n);
                        zaehle();
                        if (std::uint64_t(a) + n > rb) break;
                        a += n;
                    }
                }
                if (rb == 0xFFFFFFFF || !eprom.liefereBereich(rb + 1, rv, rb)) break;
            }
        }
        if (modus == S2S8)
            MotorolaHexZeileS8().schreibe(os);
        else if (modus == S3S7)
            MotorolaHexZeileS7().schreibe(os);
        else
            MotorolaHexZeileS9().schreibe(os);
        zaehle();
    }
    modus = gemerkt;
    return os.good() ? ergebnis : 0;
}

// ===================================================================
// Binary
// ===================================================================

int EpromDateiBinaer::lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                           const adrInteger* externeAdresse) {
    const char* funktion = "EpromDateiBinaer::lies";
    adrInteger adr = startAdresse ? *startAdresse : 0;
    adrInteger limit = endAdresse ? *endAdresse : 0xFFFFFFFF;
    IDatei eingabe(datei_);
    if (!eingabe.oeffneStill()) return 0;
    // The context line names the file but keeps the line number it had.
    zeilenDatei = datei_.liefereGanz();
    Fehler::zusatzZeile = &EpromDatei::liefereZeilenPosition;
    Fehler::begrenzeAusgabe("BINARY-FILE-FMT", 5, 'W', 1);

    int ergebnis = 1;
    {
        BearbeitungsFortschritt fortschritt(10240, String("Lese Bytes"));
        std::istream& strom = *eingabe.liefereStrom();
        std::unique_ptr<std::uint8_t[]> puffer(new std::uint8_t[blockGroesse]);
        std::size_t pos = 0, ende = 0;
        auto fuelle = [&] {
            if (!strom) return false;
            strom.read(reinterpret_cast<char*>(puffer.get()), blockGroesse);
            ende = static_cast<std::size_t>(strom.gcount());
            pos = 0;
            return ende > 0;
        };
        bool daten = fuelle();
        if (externeAdresse) {
            std::uint64_t ueberspringen = *externeAdresse;
            while (daten && ueberspringen > 0) {
                std::size_t k = static_cast<std::size_t>(std::min<std::uint64_t>(ueberspringen, ende - pos));
                pos += k;
                ueberspringen -= k;
                if (pos == ende) daten = fuelle();
            }
            if (!daten) {
                Fehler("EXTADDRES-NOT-VALID", funktion, String(klein(*externeAdresse)), 'E');
                ergebnis = 0;
            }
        }
        if (ergebnis) {
            bool ueberLimit = false;
            while (daten) {
                std::uint32_t n = static_cast<std::uint32_t>(
                    std::min<std::uint64_t>(ende - pos, std::uint64_t(limit) - adr + 1));
                std::uint32_t k = eprom.setzeBytes(adr, puffer.get() + pos, n, 1);
                fortschritt += static_cast<dataInteger>(k);
                if (k < n) {
                    ergebnis = 0;
                    break;
                }
                pos += n;
                if (adr + (n - 1) == limit) {
                    ueberLimit = true;
                    break;
                }
                adr += n;
                if (pos == ende) daten = fuelle();
            }
            if (ergebnis && !daten && !ueberLimit && endAdresse) {
                Fehler("NOT-ENOUGH-DATA", funktion, String(klein(limit) + " > " + klein(adr - 1)), 'E');
                ergebnis = 0;
            }
        }
    }
    Fehler::hebeBegrenzungAuf("BINARY-FILE-FMT");
    eingabe.schliesseStill();
    Fehler::zusatzZeile = nullptr;
    return ergebnis;
}

int EpromDateiBinaer::schreibe(Eprom&, std::ostream&, adrInteger, adrInteger, const adrInteger*) {
    Fehler("FILESTREAM-NEEDED", "EpromDateiBinaer::schreibe", "ostream", 'E');
    return 0;
}

int EpromDateiBinaer::schreibe(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                               const adrInteger*) {
    ODatei ausgabe(datei_);
    if (!ausgabe.oeffneStill()) return 0;
    zeilenNr = 0;
    zeilenDatei = datei_.liefereGanz();
    adrInteger von, bis;
    int ergebnis = 0;
    if (pruefeBereich(eprom, startAdresse, endAdresse, von, bis, "EpromDateiBinaer::schreibe")) {
        ergebnis = 1;
        BearbeitungsFortschritt fortschritt(10240, String("Schreibe Bytes"));
        std::ostream& os = *ausgabe.liefereStrom();
        eprom.laufe(von, bis, [&](const EpromStrecke& s) {
            const auto n = static_cast<std::uint32_t>(s.laenge());
            // The written bytes up to the first gap.
            const void* luecke = s.anzSchr ? std::memchr(s.anzSchr, 0, n) : s.anzSchr;
            std::uint32_t gut =
                !s.anzSchr ? 0
                : luecke   ? static_cast<std::uint32_t>(static_cast<const std::uint8_t*>(luecke) - s.anzSchr)
                           : n;
            if (s.imEprom && s.daten) {
                os.write(reinterpret_cast<const char*>(s.daten), gut);
            } else {
                // Refused bytes are reported one by one, where they belong.
                for (std::uint32_t i = 0; i < gut; ++i) {
                    std::uint8_t byte = 0;
                    eprom.liefereByte(s.von + i, byte, 1);
                    os.put(static_cast<char>(byte));
                }
            }
            fortschritt += static_cast<dataInteger>(gut);
            if (gut < n) {
                Fehler("GAP-IN-EPROM", "EpromDateiBinaer::schreibe", String(klein(von) + " - " + klein(bis)),
                       'E');
                ergebnis = 0;
                return false;
            }
            return true;
        });
    }
    if (ergebnis) ergebnis = ausgabe.beende("EpromDateiBinaer::schreibe");
    // What was not completed is thrown away; the file under the name stays
    // as it was.
    ausgabe.schliesseStill();
    if (!ergebnis)
        Fehler("INVALID-DATA-FILE_REMOVED", "EpromDateiBinaer::schreibe ", datei_.liefereGanz(), 'E');
    return ergebnis;
}
