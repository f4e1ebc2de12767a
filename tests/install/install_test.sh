#!/bin/sh
# Installs the build into a scratch prefix and uses the installed program
# the way a user would: an example procedure from the installed examples,
# and a grammar named without a directory, which must be found in the
# installed data directory share/kiv.
#
#   install_test.sh <cmake> <build dir> <source dir>
set -u
cmake=$1
build=$2
quelle=$3

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
prefix=$tmp/prefix
fehler=0

fail() {
  echo "FAIL: $*"
  fehler=1
}

if ! "$cmake" --install "$build" --prefix "$prefix" >"$tmp/install.log" 2>&1; then
  cat "$tmp/install.log"
  echo "FAIL: cmake --install $build --prefix $prefix"
  exit 1
fi

kiv=$prefix/bin/kiv
beispiele=$prefix/share/doc/kiv/examples
[ -x "$kiv" ] || fail "no executable $kiv"
gzip -dc "$prefix/share/man/man1/kiv.1.gz" 2>/dev/null | cmp -s "$quelle/doc/kiv.1" - ||
  fail "manual page not installed as share/man/man1/kiv.1.gz"
for f in demo.kiv konvertiere.kiv firmware.hex grammar/patches.txt; do
  [ -f "$beispiele/$f" ] || fail "example $f not installed"
done
for g in "$quelle"/examples/grammar/*.gram; do
  [ -f "$prefix/share/kiv/$(basename "$g")" ] || fail "grammar $(basename "$g") not installed in share/kiv"
done
[ $fehler = 0 ] || exit 1

# An installed example, run from a copy as its README says.
cp -r "$beispiele" "$tmp/arbeit"
cd "$tmp/arbeit"
"$kiv" -b konvertiere.kiv firmware.hex firmware.s19 >"$tmp/lauf1.txt" 2>&1
status=$?
[ $status = 0 ] || fail "kiv -b konvertiere.kiv ended with status $status"
if [ -f firmware.s19 ]; then
  head -n 1 firmware.s19 | grep -q '^S0' || fail "firmware.s19 does not start with an S0 record"
  grep -q '^S113000031FF7FCD' firmware.s19 || fail "firmware.s19 lacks the first data record of firmware.hex"
  tail -n 1 firmware.s19 | grep -q '^S9' || fail "firmware.s19 does not end with an S9 record"
else
  fail "kiv -b konvertiere.kiv wrote no firmware.s19"
fi
grep -q 'KIV-S-CMD-KDOOBJ-BATCH-CLOSED konvertiere.kiv' kiv.log || fail "kiv.log does not record the procedure"

# A bare grammar name, from a folder that holds no grammar.
mkdir "$tmp/leer"
cd "$tmp/leer"
cp "$beispiele/grammar/patches.txt" .
echo 'umsetze(patches.txt, DAT, datei.gram, patches.kiv)' >umsetze.kiv
"$kiv" -b umsetze.kiv >"$tmp/lauf2.txt" 2>&1
status=$?
[ $status = 0 ] || fail "kiv -b umsetze.kiv ended with status $status"
grep -qx 'setze(10, /, 02)' patches.kiv 2>/dev/null || fail "the installed grammar datei.gram was not used"

if [ $fehler != 0 ]; then
  echo "--- output of the runs"
  cat "$tmp/lauf1.txt" "$tmp/lauf2.txt"
  exit 1
fi
echo "installed into a scratch prefix; the installed kiv ran konvertiere.kiv and found datei.gram in share/kiv"
