// Compiler: the engine of the command language.
//
// The parser of KdoParser with its semantic actions: it runs user commands on
// command objects, moves in the object tree, keeps the definitions of a
// procedure ('p0' to 'p9' and those made by `x=holeParameter(n)` or
// `x=liefereName()`) and holds the error control that decides whether a
// failed line ends a procedure.
//
// A Compiler is made afresh for every procedure run and every single line;
// its definitions are local to it. `compileStream` compiles and runs one
// logical line. The static drivers run a procedure file or standard input
// (`ausfuehreBatch`) and one line (`ausfuehreZeile`):
//
//   DynArray<String> p;  p[0] = "a.hex";
//   KdoStatus status = Compiler::ausfuehreBatch("proc.kiv", &p, 1);
//   if (Compiler::liefereLaufStatus() == LaufStatus::Abgebrochen) ...
//
// The statuses live in the runtime (KdoLaufzeit.h), and `aktuelleZeile` is
// process-wide: a nested `ausfuehre` runs a further Compiler inside an
// action of the outer one, and both must see the same request to leave.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "foundation/DynArray.h"
#include "foundation/Liste.h"
#include "foundation/String.h"
#include "foundation/Typen.h"
#include "language/KdoLaufzeit.h"
#include "language/KdoParser.h"

// The text of the logical line being run, ending in a newline.
extern String aktuelleZeile;

// One definition of a procedure: the quoted key, as 'p0', and its value.
class KdoDefinition : public ListenElement {
public:
    KdoDefinition(const String& schluessel, const String& wert) : wert_(wert), schluessel_(schluessel) {}
    String liefereName() const override { return schluessel_; }
    const String& wert() const { return wert_; }

private:
    String wert_;
    String schluessel_;
};

// Where the prompt reads from when a person types at a terminal (the frame
// sets `Compiler::promptEingabe`); without it the prompt is printed on
// standard output and the lines come from standard input.
class PromptEingabe {
public:
    virtual ~PromptEingabe() = default;
    // The prompt of the next physical line, in the program's own bytes.
    virtual void zeigePrompt(const std::string& prompt) = 0;
    // The typed lines, each ending in a line feed; end of input as usual.
    virtual std::istream& strom() = 0;
};

class Compiler : public KdoParser {
public:
    // Longest physical input line; the rest is read as the next line.
    static constexpr int MAX_ZEILENLAENGE = 510;
    // Deepest nesting of procedure runs (the outermost counts as 1); a
    // further `ausfuehre` reports "CMD-KDOOBJ-BATCH-TOODEEP" and runs nothing.
    static constexpr int MAX_SCHACHTELUNG = 100;

    // `parameter` may be null. Copies the parameters, sets the runtime's
    // statuses to none, none, normal, and defines 'p0' to 'p9' (more if more
    // are given; the unset ones empty). Leaves the scanner in mode Zahl.
    Compiler(DynArray<String>* parameter, int anzahl);
    ~Compiler() override;

    // Compiles and runs one logical line from `strom`; `name` is the source
    // name for messages (empty for interactive lines), `zeile` the number of
    // the first line. Afterwards the pending status of the reporter decides
    // whether the line counts as aborted. Returns 1 after a syntax error.
    int compileStream(const String& name, std::istream& strom, dataInteger zeile);

    // Runs the procedure `dateiName`, or standard input when it is empty,
    // with `anzahl` parameters. Returns `compilerStatus`: 0 normal end (also
    // when the file can not be opened), 2 `returnMain`, 3 `exit` or an abort
    // with that status. Nested too deeply, it reports and returns the status
    // unchanged.
    static KdoStatus ausfuehreBatch(const String& dateiName, DynArray<String>* parameter, int anzahl);
    // Runs one line (which should end in a newline) without parameters.
    // Returns `compilerStatus`.
    static KdoStatus ausfuehreZeile(const String& zeile);
    // Abgebrochen when the error control ended the last line compiled.
    static LaufStatus liefereLaufStatus() { return lz().laufStatus; }

    // Replaces every key of the definitions in `zeile` by its value. The
    // three characters "\^'" stand for a plain apostrophe that no key can
    // use, so they protect a quoted word from replacement.
    String ersetzeDefinitionen(const String& zeile) const;

    // What the statements `ausfuehreTrans` and `umsetze` collected.
    const String& liefereDateiName() const { return dateiName_; }
    const String& liefereGrammatikName() const { return grammatikName_; }
    const String& liefereZielName() const { return zielName_; }
    const String& liefereWort() const { return wort_; }
    DynArray<String>* liefereNeueParameter() const { return neueParameter_.get(); }
    dataInteger liefereAnzahlNeueParameter() const { return anzahlNeueParameter_; }
    // The value of a definition by its key (as "'p1'"), or null.
    const String* liefereDefinition(const String& schluessel) const;

    // The statements that translate a file by a grammar (`ausfuehreTrans`,
    // `umsetze`) are carried out by the grammar layer above this one, which
    // installs itself here at start-up. Without it they do nothing.
    class Uebersetzer {
    public:
        virtual ~Uebersetzer() = default;
        virtual void ausfuehreTransDat(Compiler& compiler) = 0;
        virtual void ausfuehreTransOSp(Compiler& compiler) = 0;
        virtual void umsetzeDat(Compiler& compiler) = 0;
        virtual void umsetzeOSp(Compiler& compiler) = 0;
    };
    // Not owned; null removes it.
    static void setzeUebersetzer(Uebersetzer* uebersetzer) { uebersetzer_ = uebersetzer; }

    // Null unless standard input and output are a terminal with an editor.
    static PromptEingabe* promptEingabe;

    // The parser's hooks and semantic actions; see KdoParser.
    void errorMessage() override;

    void anzeigeImFehlerfall() override;
    void anzeigeKdoObjekte() override;
    void ausfuehre() override;
    void exeOhneObjekt() override;
    void exeMitObjekt() override;
    void hilfeAllgemein() override;
    void imFehlerfallSetzen() override;
    void funktionswertSetzen() override;
    void ausfuehreKdoOTypCheck() override;
    void hilfeOhneObjekt() override;
    void hilfeMitObjekt() override;
    void ausfuehreTransDat() override;
    void ausfuehreTransOSp() override;
    void hilfeAnzeigeImFehlerfall() override;
    void hilfeAnzeigeKdoObjekte() override;
    void hilfeAusfuehreTrans() override;
    void hilfeAusfuehre() override;
    void hilfeExit() override;
    void hilfeImFehlerfall() override;
    void hilfeKdoOTypCheck() override;
    void hilfeUmsetze() override;
    void parameterLoeschen() override;
    void insertParam() override;
    void kdooVater() override;
    void kdooGeschwister() override;
    void kdooSohn() override;
    void imFehlerfallLoeschen() override;
    void funktionswertLoeschen() override;
    void modusNormal() override;
    void modusText() override;
    void statusExit() override;
    void statusReturn() override;
    void statusReturnMain() override;
    void modusZahl() override;
    void merkeWort() override;
    void merkeZahl() override;
    void setzeAktKdoObjekt() override;
    void merkeZiel() override;
    void merkeParameter() override;
    void merkeDatei() override;
    void merkeGrammatik() override;
    void setzeName() override;
    void umsetzeDat() override;
    void umsetzeOSp() override;

protected:
    // Runs the user command in `aktuelleZeile`: with `mitObjekt` 1 on the
    // object named before the first ":", else on the current object. With
    // `setzeAktuell` 1 the named object becomes the current one.
    void ausfuehreExeKommando(int mitObjekt, int setzeAktuell);
    // The general help, the current object's full name, and its command list.
    void hilfe(int mitObjekt);
    void hilfeMitListe();
    void statusExitDirekt();

    static inline Uebersetzer* uebersetzer_ = nullptr;
    // The state shared by nested compilers.
    static KdoLaufzeit& lz() { return KdoLaufzeit::aktuelle(); }

private:
    // Inserts the key 'wort' with `wert`; warns and keeps the old value if
    // the key is taken. 1 if inserted.
    int definiere(const String& wert);

    ListeSort definitionen_;  // of KdoDefinition, owning
    dataInteger zahl_ = 0;
    String wort_;  // at most 1023 bytes
    String dateiName_;
    String grammatikName_;
    String zielName_;
    String letztesObjekt_;
    dataInteger anzahlNeueParameter_ = 0;
    dataInteger anzahlParameter_ = 10;
    std::unique_ptr<DynArray<String>> neueParameter_;
    DynArray<String> parameter_;
};
