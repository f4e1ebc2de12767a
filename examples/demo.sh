#!/bin/sh
# Runs kiv on the shipped examples in a scratch directory and shows what it printed.
set -e
kiv=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$here"/. "$work"/
cd "$work"
if [ -f demo.kiv ]; then
  echo "\$ kiv -b demo.kiv"
  "$kiv" -b demo.kiv || true
else
  echo "\$ kiv < /dev/null"
  "$kiv" </dev/null || true
fi
echo
echo "--- kiv.log"
cat kiv.log
