// The statements that translate a file by a grammar, with the engine
// mmparse: `ausfuehreTrans` translates the file line by line and runs each
// translated line at once as a command, `umsetze` writes the translation of
// the whole file to a file. The parser has already collected the file names,
// the grammar and the parameters in the Compiler.
//
// A grammar comes from a file (DAT) or from a grammar object (SYSOSP); the
// system keeps no grammar objects, so the SYSOSP forms end at once.
#include "grammar/Uebersetzung.h"

#include <cstdint>
#include <cstdio>
#include <istream>
#include <sstream>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include "foundation/Datei.h"
#include "foundation/DateiName.h"
#include "grammar/mmparse/mmparse.h"
#include "language/Compiler.h"
#include "reporting/Fehler.h"

namespace {

// Longest piece of a line that is read at once; the buffers hold one byte
// more, as the engine's output buffer needs room for its NUL.
constexpr int STUECK = 511;

// Reads at most STUECK bytes into `puffer`, up to and including a line feed.
// Returns the number of bytes; 0 at the end of the input.
template <class Lies>
int liesStueck(Lies lies, char* puffer) {
    int n = 0;
    while (n < STUECK) {
        const int zeichen = lies();
        if (zeichen == EOF) break;
        puffer[n++] = static_cast<char>(zeichen);
        if (zeichen == '\n') break;
    }
    return n;
}

// The text of a grammar object by its name, or null. The system keeps no
// grammar objects yet; this is the one place where they would be found.
const char* sucheGrammatikObjekt(const String& /*name*/) { return nullptr; }

// A file that could not be opened as a stream is opened once more through
// the input file wrapper, for its usual report.
void meldeOeffnungsFehler(const String& name) {
    IDatei bericht{DateiName(name)};
    bericht.oeffne();
}

// The labels of the engine's results, indexed by the negated code; null
// where a code has none.
constexpr int ANZAHL_CODES = 1 - MM_NOMEM_INDEX;
constexpr const char* KENNUNGEN[] = {
    "TRANS-SYNTAX-ERR",          // 0
    "TRANS-ILLEGALARGS-ERR",     // -1
    "TRANS-OTOLONG-ERR",         // -2
    "TRANS-NOMEMORY-ERR",        // -3
    "TRANS-NOMEMORY-ERR",        // -4
    "TRANS-NOMEMORY-ERR",        // -5
    "TRANS-NOMEMORY-ERR",        // -6
    "TRANS-NOMEMORY-ERR",        // -7
    "TRANS-NOMEMORY-ERR",        // -8
    "TRANS-UNDEFINEDSYM-ERR",    // -9
    "TRANS-UNDECLAREDVAR-ERR",   // -10
    "TRANS-REDEFINEDSYM-ERR",    // -11
    "TRANS-REDECLAREDVAR-ERR",   // -12
    "TRANS-ILLEGALDEF-ERR",      // -13
    "TRANS-ILLEGALASSIGN-ERR",   // -14
    "TRANS-ILLEGALSYM-ERR",      // -15
    "TRANS-ILLEGALVAR-ERR",      // -16
    "TRANS-LEFTRECURSION-ERR",   // -17
    "TRANS-UNCLOSEDGROUP-ERR",   // -18
    "TRANS-UNOPENEDGROUP-ERR",   // -19
    "TRANS-ILLEGALGROUP-ERR",    // -20
    "TRANS-UNCLOSEDSET-ERR",     // -21
    "TRANS-ILLEGALRANGE-ERR",    // -22
    "TRANS-ILLEGALNOT-ERR",      // -23
    "TRANS-ILLEGALSUFF01-ERR",   // -24
    nullptr,                     // -25: a stray '+' goes unreported, intended
    "TRANS-ILLEGALSUFF0N-ERR",   // -26
    "TRANS-ILLEGALSUFFM-ERR",    // -27
    "TRANS-ILLEGALSUFF0M-ERR",   // -28
    "TRANS-ILLEGALBSLCHAR-ERR",  // -29
    "TRANS-ILLEGALHEXCHAR-ERR",  // -30
    "TRANS-CANTWRITE-ERR",       // -31
    "TRANS-NOMEMORY-ERR",        // -32
    "TRANS-NOMEMORY-ERR",        // -33
};
static_assert(sizeof(KENNUNGEN) / sizeof(KENNUNGEN[0]) == ANZAHL_CODES,
              "one label for each result code of mmparse");

const char* kennungVon(dataInteger code) {
    if (code > 0 || code <= -ANZAHL_CODES) return nullptr;
    return KENNUNGEN[-code];
}

// Translated lines run inside the statement, on the C++ stack, and may
// themselves be ausfuehreTrans statements: a translation that leads back to
// itself must end with a message instead of overflowing the stack. The limit
// and the label are those of nested procedure runs.
class Schachtelung {
public:
    Schachtelung() : tiefe_(KdoLaufzeit::aktuelle().uebersetzungsTiefe) { ++tiefe_; }
    ~Schachtelung() { --tiefe_; }
    Schachtelung(const Schachtelung&) = delete;
    Schachtelung& operator=(const Schachtelung&) = delete;
    // 1 if this run may go on; otherwise reported.
    static int erlaubt(const String& dateiName, const char* funktion) {
        if (KdoLaufzeit::aktuelle().uebersetzungsTiefe <= Compiler::MAX_SCHACHTELUNG) return 1;
        Fehler("CMD-KDOOBJ-BATCH-TOODEEP", funktion, dateiName, 'E');
        return 0;
    }

private:
    int& tiefe_;
};

// ausfuehreTrans: each line of the file to translate goes through the
// engine on its own; the translation, with the statement's parameters put
// in, runs in a second Compiler. Only a failure of the engine ends the
// loop; a command that fails does not.
void fuehreUebersetzungAus(const Compiler& c, const char* grammatik, const char* funktion) {
    const String& dateiName = c.liefereDateiName();
    std::FILE* quelle = std::fopen(dateiName.c_str(), "r");
    if (!quelle) {
        meldeOeffnungsFehler(dateiName);
        return;
    }
    Compiler zweiter(c.liefereNeueParameter(), c.liefereAnzahlNeueParameter());

    char zeile[STUECK + 1];
    char ausgabe[STUECK + 1];
    dataInteger nummer = 0;
    for (;;) {
        int n = liesStueck([quelle] { return std::getc(quelle); }, zeile);
        if (n == 0) break;
        // A file of more lines than the counter holds keeps the last number.
        if (nummer < INT32_MAX) ++nummer;
        // The last byte goes as the line feed even where it is none: a last
        // line without a line end, or the first piece of a long line, loses
        // a real byte. Intended; translations rely on the old reading.
        --n;
        zeile[n] = '\0';

        std::int32_t position = 0;
        const std::int32_t ergebnis = mmparse(ausgabe, STUECK, grammatik, zeile, n, "", &position);
        if (ergebnis < 1) {
            meldeMmparseFehler(ergebnis, zeile, position, nummer);
            break;
        }
        const String uebersetzt = zweiter.ersetzeDefinitionen(
            String(std::string_view(ausgabe, static_cast<std::size_t>(ergebnis - 1))));
        Fehler("CMD-TRANS", funktion, String("\n\t") + dateiName + ":" + String(nummer) + ": " + uebersetzt,
               'S');

        aktuelleZeile = uebersetzt + "\n";
        std::istringstream eingabe(aktuelleZeile.str());
        zweiter.compileStream(dateiName, eingabe, nummer);
    }
    std::fclose(quelle);
}

// Whether two names lead to one file, through links or different spellings.
bool dieselbeDatei(const char* a, const char* b) {
    struct stat ea, eb;
    return ::stat(a, &ea) == 0 && ::stat(b, &eb) == 0 && ea.st_dev == eb.st_dev && ea.st_ino == eb.st_ino;
}

// umsetze: one engine call over the whole file, stream to stream. The
// output replaces its file only once it is complete.
void schreibeUebersetzung(const Compiler& c, const char* grammatik, const char* funktion) {
    const String& zielName = c.liefereZielName();
    std::FILE* quelle = std::fopen(c.liefereDateiName().c_str(), "r");
    if (!quelle) {
        meldeOeffnungsFehler(c.liefereDateiName());
        return;
    }
    // Writing onto the input would read the output back as input.
    if (dieselbeDatei(c.liefereDateiName().c_str(), zielName.c_str())) {
        std::fclose(quelle);
        Fehler("TRANS-SAME-FILE", funktion,
               zielName + ": Eingabe und Ausgabe sind dieselbe Datei, nichts geschrieben", 'E');
        return;
    }
    // An output file that can not be made is not reported here: the engine
    // answers the null stream with its illegal-arguments code.
    SichereAusgabe ausgabe(zielName);
    std::FILE* ziel = ausgabe.offen() ? ausgabe.cStrom() : nullptr;
    std::int32_t position = 0;
    const std::int32_t ergebnis = mmparse(ziel, 0, grammatik, quelle, 0, "><", &position);
    if (ergebnis < 1) meldeMmparseFehler(ergebnis, nullptr, position, 0);
    std::fclose(quelle);
    if (ziel && ergebnis >= 1)
        if (const int fehler = ausgabe.beende()) meldeSchreibFehler(zielName, fehler, funktion);
}

// The statements themselves.
class GrammatikUebersetzer : public Compiler::Uebersetzer {
public:
    void ausfuehreTransDat(Compiler& c) override {
        const Schachtelung ebene;
        if (!Schachtelung::erlaubt(c.liefereDateiName(), "Compiler::ausfuehreTransDat")) return;
        std::string grammatik;
        if (!leseGrammatik(c.liefereGrammatikName(), grammatik)) return;
        fuehreUebersetzungAus(c, grammatik.c_str(), "Compiler::ausfuehreTransDat");
    }
    void ausfuehreTransOSp(Compiler& c) override {
        const Schachtelung ebene;
        if (!Schachtelung::erlaubt(c.liefereDateiName(), "Compiler::ausfuehreTransOSp")) return;
        const char* grammatik = sucheGrammatikObjekt(c.liefereWort());
        if (!grammatik) return;
        fuehreUebersetzungAus(c, grammatik, "Compiler::ausfuehreTransOSp");
    }
    void umsetzeDat(Compiler& c) override {
        std::string grammatik;
        if (!leseGrammatik(c.liefereGrammatikName(), grammatik)) return;
        schreibeUebersetzung(c, grammatik.c_str(), "Compiler::umsetzeDat");
    }
    void umsetzeOSp(Compiler& c) override {
        const char* grammatik = sucheGrammatikObjekt(c.liefereWort());
        if (!grammatik) return;
        schreibeUebersetzung(c, grammatik, "Compiler::umsetzeOSp");
    }
};

}  // namespace

void richteUebersetzungEin() {
    static GrammatikUebersetzer uebersetzer;
    Compiler::setzeUebersetzer(&uebersetzer);
}

int leseGrammatik(const String& name, std::string& grammatik) {
    IDatei datei(DateiName(name).vervollstaendigt());
    if (!datei.oeffne()) return 0;
    std::istream& strom = *datei.liefereStrom();

    grammatik.clear();
    char stueck[STUECK + 1];
    for (;;) {
        int n = liesStueck([&strom] { return strom.get(); }, stueck);
        if (n == 0) break;
        datei.zaehleZeile();
        // A piece that fills the buffer loses its last byte as if it were
        // the line feed. Intended: long grammar lines have always read so.
        if (stueck[n - 1] == '\n' || n == STUECK) --n;
        if (n > 0 && stueck[n - 1] == '\r') --n;
        // The first empty line ends the grammar; what follows is not read.
        if (n == 0) break;
        grammatik.append(stueck, static_cast<std::size_t>(n));
    }
    datei.schliesse();
    return 1;
}

void meldeMmparseFehler(dataInteger code, const char* text, dataInteger position, dataInteger zeile) {
    const char* kennung = kennungVon(code);
    if (!kennung) return;
    String detail;
    if (text) detail = String("Zeile ") + String(zeile) + ", Position " + String(position) + ": " + text;
    if (String(kennung) == "TRANS-NOMEMORY-ERR") {
        detail += text ? "\nparsecode= " : "parsecode= ";
        detail += code;
    }
    Fehler(kennung, "Compiler::mmparseError", detail, 'E');
}
