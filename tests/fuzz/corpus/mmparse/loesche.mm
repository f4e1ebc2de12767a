<zeile># Uebersetzt eine Zeile ##<zeile>=<_ws>(<setze>|<loesche>)<_ws>#<setze>=^(set)<_ws><adr>.{a}<_ws>[,=]<_ws><wert>.{w}%setzeByte\({a}, {w}\)#<loesche>=^(del)<_ws><adr>.{a}%loescheByte\({a}\)#<adr>=[0-9a-fA-F]+#<wert>=[0-9]+#<_ws>=[ \t]*

del ff