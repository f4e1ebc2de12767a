#!/bin/sh
# Interoperation with binutils' objcopy: files it writes load into kiv with
# the same bytes, and files kiv writes read back in objcopy with the same bytes.
# Usage: interop_objcopy.sh path/to/kiv
set -eu
kiv=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
if ! command -v objcopy >/dev/null 2>&1; then
  echo "objcopy not found: interoperation not checked"
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
fails=0
check() {  # name file1 file2
  if cmp -s "$2" "$3"; then echo "PASS $1"; else echo "FAIL $1"; fails=$((fails + 1)); fi
}
# 200 KiB crosses several 64 KiB windows, so extended address records occur.
# S1 output is checked on an image below 64 KiB: above it the writer widens
# to S2 behind an S9 end record, which this system reads on but objcopy
# takes for the end of the file.
head -c 204800 /dev/urandom > orig.bin
head -c 61440 orig.bin > klein.bin
objcopy -I binary -O srec klein.bin klein.s19
objcopy -I binary -O ihex orig.bin oc.hex
objcopy -I binary -O srec orig.bin oc.s19
objcopy -I binary -O srec --srec-forceS3 orig.bin oc.s37
cat > p.kiv <<'PROC'
oeffne(Intel, oc.hex)
schreibe(Binaer, von-intel.bin)
schreibe(Intel, kiv.hex)
-
oeffne(Motorola, oc.s19)
schreibe(Binaer, von-s19.bin)
schreibe(Motorola_S2S8, kiv.s28)
-
oeffne(Motorola, klein.s19)
schreibe(Motorola_S1S9, kiv.s19)
schreibe(Motorola_DYN, kiv-dyn.s19)
-
oeffne(Motorola, oc.s37)
schreibe(Binaer, von-s37.bin)
schreibe(Motorola_S3S7, kiv.s37)
exit
PROC
"$kiv" -b p.kiv >/dev/null 2>&1 || { echo "FAIL kiv run"; exit 1; }
check "objcopy Intel hex loads into kiv" orig.bin von-intel.bin
check "objcopy S1 records load into kiv" orig.bin von-s19.bin
check "objcopy S3 records load into kiv" orig.bin von-s37.bin
for f in kiv.hex:orig kiv.s28:orig kiv.s37:orig kiv.s19:klein kiv-dyn.s19:klein; do
  datei=${f%%:*}
  format=srec; [ "$datei" = kiv.hex ] && format=ihex
  objcopy -I "$format" -O binary "$datei" "$datei.bin"
  check "objcopy reads kiv's $datei" "${f#*:}.bin" "$datei.bin"
done
echo "$((8 - fails)) passed, $fails failed"
[ "$fails" = 0 ]
