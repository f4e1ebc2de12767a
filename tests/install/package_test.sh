#!/bin/sh
# The Debian package as a user gets it.
#
#   package_test.sh <cpack> <build dir> <source dir>
#     builds the .deb into <build dir>/paket, unpacks it into a scratch root
#     (nothing is installed on this system), checks where its files lie, and
#     runs the unpacked kiv through PATH from a folder of its own with a
#     grammar named without a directory.
#   package_test.sh --lintian <build dir>
#     lintian over that .deb: no errors and no warnings.
#
# Exit status 77 (skipped) when dpkg-deb or lintian is missing.
set -u

if [ "$1" = --lintian ]; then
  command -v lintian >/dev/null || { echo "lintian not installed: skipped"; exit 77; }
  deb=$(ls "$2"/paket/kiv_*.deb 2>/dev/null | head -n 1)
  [ -n "$deb" ] || { echo "FAIL: no .deb in $2/paket (the package test makes it)"; exit 1; }
  befund=$(lintian --no-tag-display-limit "$deb" 2>&1 | grep -E '^[EW]: ')
  if [ -n "$befund" ]; then
    echo "FAIL: lintian reports on $deb:"
    echo "$befund"
    exit 1
  fi
  echo "lintian: no errors and no warnings on $(basename "$deb")"
  exit 0
fi

cpack=$1
build=$2
quelle=$3
command -v dpkg-deb >/dev/null || { echo "dpkg-deb not installed: skipped"; exit 77; }

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
fehler=0
fail() {
  echo "FAIL: $*"
  fehler=1
}

rm -rf "$build/paket"
if ! (cd "$build" && "$cpack" -G DEB -B "$build/paket") >"$tmp/cpack.log" 2>&1; then
  cat "$tmp/cpack.log"
  echo "FAIL: cpack -G DEB"
  exit 1
fi
rm -rf "$build/paket/_CPack_Packages"
deb=$(ls "$build"/paket/kiv_*.deb | head -n 1)
wurzel=$tmp/wurzel
dpkg-deb -x "$deb" "$wurzel" || { echo "FAIL: dpkg-deb -x $deb"; exit 1; }

for f in usr/bin/kiv usr/share/kiv/datei.gram usr/share/kiv/zeile.gram usr/share/doc/kiv/copyright \
    usr/share/doc/kiv/changelog.gz usr/share/man/man1/kiv.1.gz usr/share/bash-completion/completions/kiv; do
  [ -f "$wurzel/$f" ] || fail "the package lacks /$f"
done
ls "$wurzel"/usr/bin/*.gram >/dev/null 2>&1 && fail "grammar files in /usr/bin"
gzip -dc "$wurzel/usr/share/man/man1/kiv.1.gz" | cmp -s - "$quelle/doc/kiv.1" || fail "kiv.1.gz is not the manual page"
vorschlag=$(bash -c '. "$1"; COMP_WORDS=(kiv -); COMP_CWORD=1; _kiv; echo "${COMPREPLY[*]}"' - \
  "$wurzel/usr/share/bash-completion/completions/kiv" 2>&1)
[ "$vorschlag" = "-x -b" ] || fail "the bash completion offers '$vorschlag' for 'kiv -'"
[ $fehler = 0 ] || exit 1

# Started through PATH from a folder without grammars, with a bare name.
mkdir "$tmp/arbeit"
cd "$tmp/arbeit"
cp "$quelle/examples/grammar/patches.txt" .
echo 'umsetze(patches.txt, DAT, datei.gram, patches.kiv)' >umsetze.kiv
PATH="$wurzel/usr/bin:$PATH" kiv -b umsetze.kiv >"$tmp/lauf.txt" 2>&1
status=$?
[ $status = 0 ] || fail "kiv -b umsetze.kiv ended with status $status"
grep -qx 'setze(10, /, 02)' patches.kiv 2>/dev/null || fail "the packaged grammar datei.gram was not found"
if [ $fehler != 0 ]; then
  echo "--- output of the run"
  cat "$tmp/lauf.txt"
  exit 1
fi
echo "$(basename "$deb") unpacked into a scratch root; kiv through PATH found datei.gram in /usr/share/kiv"
