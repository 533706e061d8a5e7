#!/bin/sh
# Builds the benchmarks, prints their tables and at the end one of all figures and goals. Peers that
# are installed (age, openssl, gpg, 7z) take part. Usage: bench/run.sh [folder on the disk to
# measure; the default is the system's temporary folder] [MiB] [rounds]
set -eu
cd "$(dirname "$0")/.."
cmake --preset release > /dev/null
cmake --build --preset release --target bench_throughput bench_small_files bench_start zr5e \
    > /dev/null
folder=${1:-${TMPDIR:-/tmp}}
rounds=${3:-5}
figures=$(mktemp)
trap 'rm -f "$figures"' EXIT
keep_figures() {
    sed -u -n -e "/^figure /{s/^figure //w $figures.new
d}" -e p
    cat "$figures.new" >> "$figures"
    rm -f "$figures.new"
    echo
}
build/release/bin/bench_throughput "$folder" "${2:-1024}" "$rounds" | keep_figures
build/release/bin/bench_small_files "$folder" "$rounds" 2> /dev/null | keep_figures
# The same on a display, as far as there can be one.
if command -v xvfb-run > /dev/null; then
    QT_QPA_PLATFORM=xcb xvfb-run -a build/release/bin/bench_small_files "$folder" 1 10000 \
        2> /dev/null | keep_figures
fi
build/release/bin/bench_start 2> /dev/null | keep_figures
echo "| figure | goal | measured | met |"
echo "|---|---|---|---|"
cat "$figures"
