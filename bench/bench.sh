#!/bin/sh
# Whole-process figures: kiv against objcopy on a 16 MiB image, and the
# image commands on it. Prints figures only; never fails a build.
exec python3 "$(dirname "$0")/bench_process.py" "$@"
