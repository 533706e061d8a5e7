#!/bin/sh
# Builds the benchmarks and prints their tables. Usage: bench/run.sh [folder on the disk to
# measure; the default is the system's temporary folder] [MiB] [rounds]
set -eu
cd "$(dirname "$0")/.."
cmake --preset release > /dev/null
cmake --build --preset release --target bench_throughput bench_small_files > /dev/null
folder=${1:-${TMPDIR:-/tmp}}
build/release/bin/bench_throughput "$folder" "${2:-1024}" "${3:-5}"
echo
exec build/release/bin/bench_small_files "$folder" 2> /dev/null
