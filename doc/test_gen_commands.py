#!/usr/bin/env python3
"""Tests of the help reader and the page filler of gen_commands.py.

The drift check compares the page with what the reader makes of the help,
so a reader that splits a column wrongly would pass it; these cases pin the
layouts of the help's column stops 10, 25 and 45.
"""

import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import gen_commands as g  # noqa: E402


def zeile(typ="", name="", vorgabe=""):
    """A help line with the fields at their stops, as the help writes them."""
    z = " " * 10 + typ
    if name:
        z = z.ljust(25) + name
    if vorgabe:
        z = z.ljust(45) + vorgabe
    return z


class HilfeSpalten(unittest.TestCase):
    def test_layouts(self):
        faelle = [
            ("plain fields",
             [zeile("IntegerHex", "startAdresse", "0")],
             [("IntegerHex", "startAdresse", "0")]),
            ("type longer than its column: the name starts the next line",
             ["          Enum{Intel,Motorola,Binaer}", zeile("", "dateiTyp", "Intel")],
             [("Enum{Intel,Motorola,Binaer}", "dateiTyp", "Intel")]),
            ("type that fills its column: the name is glued on",
             ["          Enum{hex,ascii}darstellung         hex"],
             [("Enum{hex,ascii}", "darstellung", "hex")]),
            ("name longer than its column: the default starts the next line",
             [zeile("Bool", "addiereLetzteChecksumme"), " " * 45 + "n"],
             [("Bool", "addiereLetzteChecksumme", "n")]),
            ("name that fills its column: the default is glued on",
             [" " * 10 + "Bool".ljust(15) + "abcdefghijklmnopqrst" + "y"],
             [("Bool", "abcdefghijklmnopqrst", "y")]),
            ("default with blanks and quotes runs to the end of the line",
             [zeile("String", "format", '<Bytes\\"<> ">')],
             [("String", "format", '<Bytes\\"<> ">')]),
            ("empty default",
             [zeile("Wort", "epromName"), zeile("Bool", "schliesseImmer", "n")],
             [("Wort", "epromName", ""), ("Bool", "schliesseImmer", "n")]),
        ]
        for name, block, erwartet in faelle:
            with self.subTest(name):
                self.assertEqual(g.argumente(block), erwartet)

    def test_stray_column_is_refused(self):
        with self.assertRaises(ValueError):
            g.argumente(["     Integer        x"])


class Bloecke(unittest.TestCase):
    def test_blocks_follow_the_names_in_order(self):
        ausgabe = ["", "KIV++ Version V1.11-2", "info", "setze", zeile("IntegerHex", "a", "0"),
                   "neu", zeile("DateiName", "dateiName", "/")]
        b = g.hilfeBloecke(ausgabe, ["info", "setze", "neu"])
        self.assertEqual(b["info"], [])
        self.assertEqual(len(b["setze"]), 1)
        self.assertEqual(len(b["neu"]), 1)

    def test_missing_help_is_an_error(self):
        with self.assertRaises(ValueError):
            g.hilfeBloecke(["info"], ["info", "setze"])

    def test_command_lists(self):
        ausgabe = ["<Kiv>Kiv", "", "Kommandoliste KivObjekt", "neu", "oeffne", "", "x"]
        self.assertEqual(g.kommandolisten(ausgabe), {"KivObjekt": ["neu", "oeffne"]})


class Troff(unittest.TestCase):
    def test_escapes(self):
        self.assertEqual(g.troff("a\\b-c"), "a\\eb\\-c")
        self.assertEqual(g.troff(".x"), "\\&.x")
        self.assertEqual(g.troff("'x"), "\\&'x")
        self.assertEqual(g.troff("\u00dcber\u00fc"), "\\(:Uber\\(:u")


class Fuellen(unittest.TestCase):
    SEITE = "\n".join([".TH X 1", '.\\" {{hilfe a', "alt", '.\\" }}hilfe', "text",
                       '.\\" {{hilfe b', '.\\" }}hilfe', ""])

    def test_parts_are_replaced_and_the_rest_kept(self):
        neu, fehler = g.fuelle(self.SEITE, {"a": ["A1", "A2"], "b": ["B"]})
        self.assertEqual(fehler, [])
        self.assertEqual(neu.split("\n"), [".TH X 1", '.\\" {{hilfe a', "A1", "A2", '.\\" }}hilfe',
                                           "text", '.\\" {{hilfe b', "B", '.\\" }}hilfe', ""])

    def test_unmatched_names_both_ways(self):
        _, fehler = g.fuelle(self.SEITE, {"a": [], "c": []})
        self.assertEqual(len(fehler), 2)
        self.assertTrue(any(" b," in f for f in fehler))
        self.assertTrue(any(" c " in f for f in fehler))

    def test_missing_end_mark(self):
        _, fehler = g.fuelle('.\\" {{hilfe a\nx\n', {"a": []})
        self.assertTrue(any("no end mark" in f for f in fehler))


if __name__ == "__main__":
    unittest.main()
