#!/bin/sh
# Builds the benchmarks and prints their tables. Usage: bench/run.sh [folder on the disk to
# measure; the default is the system's temporary folder] [MiB] [rounds]
set -eu
cd "$(dirname "$0")/.."
cmake --preset release > /dev/null
cmake --build --preset release --target bench_throughput > /dev/null
exec build/release/bin/bench_throughput "${1:-${TMPDIR:-/tmp}}" "${2:-1024}" "${3:-5}"
