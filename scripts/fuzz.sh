#!/bin/bash
# Builds every fuzzer in tests/fuzz and runs each from its corpus for so many seconds; fails when
# one of them finds something: scripts/fuzz.sh [SECONDS]
# What is found and what is learnt stays in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}

scripts/install_packages.sh packaging/debian-packages.txt packaging/debian-packages-ci.txt
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

status=0
for source in tests/fuzz/*_fuzzer.cpp; do
    name=$(basename "$source" _fuzzer.cpp)
    work=build/fuzz/found/$name
    mkdir -p "$work/learnt"
    log=$work/log
    # The first folder takes what is new, the second is only read.
    if ! "build/fuzz/bin/${name}_fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$work/" "$work/learnt" \
        "tests/fuzz/corpus/$name" >"$log" 2>&1; then
        tail -n 40 "$log"
        echo "$name: FOUND SOMETHING, see $work"
        status=1
        continue
    fi
    sed -n "s/^Done \([0-9]*\) runs in \([0-9]*\) second.*/$name: \1 runs, \2 seconds/p" "$log"
done
exit "$status"
