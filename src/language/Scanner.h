// Scanner: the generic automaton that cuts a character source into tokens,
// and KdoScanner, its states for the command language.
//
// A state is a one-function object that looks at the current character
// `zeichen` and acts through the operations of the scanner: start a token,
// append, consume, deliver, move to another state or call one (with a
// return through the state stack). `naechstesToken` runs states until one
// delivers.
//
// The command scanner reads in one of three modes (`ScannerModus`), kept in
// the runtime because the parser's actions switch it in the middle of a
// statement and nested compilers share it.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "foundation/String.h"
#include "foundation/Typen.h"
#include "language/KdoLaufzeit.h"
#include "language/ZeichenQuelle.h"

// Token numbers of the command language; single characters are their own
// tokens by character code.
namespace KdoToken {
enum : dataInteger {
    ENDE = 0,
    SCANFEHLER = 256,
    ZAHL,
    NAME,
    REALZAHL,
    TEXT,
    ANZEIGEKDOOBJEKTE,
    AUSFUEHRE,
    AUSFUEHRETRANS,
    DAT,
    SYSOSP,
    RETURN,
    RETURNMAIN,
    HOLEPARAMETER,
    LIEFERENAME,
    ZEILENENDE,
    EXIT,
    MINUS,
    PLUS,
    KDOOTYPCHECK,
    IMFEHLERFALL,
    ANZEIGEIMFEHLERFALL,
    UMSETZE,
    VATER,
    SOHN,
    NAECHSTER,
    LETZTES = NAECHSTER
};
}
static_assert(KdoToken::TEXT == 260 && KdoToken::ZEILENENDE == 270 && KdoToken::NAECHSTER == 280,
              "token numbers are the parser table's terminal symbols");

class Scanner;

class ScannerZustand {
public:
    virtual ~ScannerZustand() = default;
    virtual void operator()(Scanner& scanner) const = 0;
};

class Scanner {
public:
    Scanner();
    Scanner(const Scanner&) = delete;
    Scanner& operator=(const Scanner&) = delete;
    virtual ~Scanner();

    // Reads from `strom` (not owned), first line `zeile`; back to the nil
    // state, a character is needed, no error.
    virtual void oeffne(std::istream& strom, dataInteger zeile);
    // Enters the start state; called at the beginning of every token.
    virtual void start() = 0;

    // The next token's number; its text goes to `wert` and its position to
    // `position`. A scanner error gives SCANFEHLER.
    dataInteger naechstesToken(String& wert, QuellPosition& position);

    ZeichenQuelle& liefereQuelle() { return quelle_; }
    const char* liefereFehlerText() const { return fehlerText_.c_str(); }

    // The building blocks of the states.
    void liefere(dataInteger tokenNummer, int verbrauche);
    void beginne();
    void beginneMit();
    void beginneOhne();
    void haengeAn();
    void ueberlies();
    void lieferZeichen();
    bool istZiffer() const { return istZifferVon(zeichen_); }
    static bool istZifferVon(int c) { return c >= '0' && c <= '9'; }
    bool istLeer() const { return istLeerVon(zeichen_); }
    virtual bool istLeerVon(int c) const;
    bool istBuchstabe() const {
        return (zeichen_ >= 'A' && zeichen_ <= 'Z') || (zeichen_ >= 'a' && zeichen_ <= 'z');
    }
    void rufe(const ScannerZustand& naechster);
    void kehreZurueck();
    void unerwartetesZeichen();

    void geheZu(const ScannerZustand& naechster) { zustand_ = &naechster; }
    unsigned char liefereZeichen() const { return zeichen_; }

protected:
    // The token delivered before the current one (ENDE after `oeffne`).
    dataInteger liefereLetztesToken() const { return letztesToken_; }
    void setzeFehler(const char* text);

    ZeichenQuelle quelle_;
    StringPuffer text_;
    dataInteger token_ = KdoToken::ENDE;
    unsigned char zeichen_ = 0;
    unsigned char brauchtZeichen_ = 1;
    const ScannerZustand* zustand_;
    dataInteger fertig_ = 0;
    QuellPosition position_;
    dataInteger fehler_ = 0;
    StringPuffer fehlerText_;
    std::vector<const ScannerZustand*> zustandsStapel_;

private:
    dataInteger letztesToken_ = KdoToken::ENDE;
};

// The scanner of the command language with its twelve states.
class KdoScanner : public Scanner {
public:
    KdoScanner() = default;

    void start() override;
    bool istLeerVon(int c) const override;

    // The keyword's token for an identifier in any case, else NAME.
    static dataInteger sucheSchluesselwort(const char* wort);
    // The keywords as users write them, for the prompt's completion.
    struct Schreibweise {
        const char* wort;
        dataInteger token;
    };
    static const Schreibweise* schluesselwortSchreibweisen(std::size_t& anzahl);
    // Stores the message of a string without its closing quote.
    void fehlerStringEnde();

private:
    class Zustand;

    // The character source is exhausted (as opposed to a byte 255 read).
    bool quellEnde() const { return zeichen_ == 255 && quelle_.amEnde(); }

    void zustandStart();
    void zustandStartRohtext();
    void zustandStartNormal();
    void zustandRohtext();
    void zustandRohtextFortsetzung();
    void zustandSchraegstrich();
    void zustandKommentar();
    void zustandFortsetzung();
    void zustandZeichenkette();
    void zustandZeichenketteFortsetzung();
    void zustandBezeichner();
    void zustandZahl();
    void zustandNachkomma();

    dataInteger doppelteHochkommas_ = 0;  // quote counters of raw text
    dataInteger hochkommas_ = 0;

    static const Zustand start_, rohtext_, rohtextFortsetzung_, schraegstrich_, kommentar_, fortsetzung_,
        zeichenkette_, zeichenketteFortsetzung_, bezeichner_, zahl_, nachkomma_;
};
