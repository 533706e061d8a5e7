#!/bin/bash
# clang-tidy on the sources that changed in the commits of the last day, or since a revision:
# scripts/tidy_changed.sh [REVISION]
set -euo pipefail
cd "$(dirname "$0")/.."

empty_tree=$(git hash-object -t tree /dev/null)
base=${1:-$(git rev-list -1 --before='1 day ago' HEAD)}
mapfile -t files < <(git diff --name-only --diff-filter=d "${base:-$empty_tree}" HEAD -- \
    'src/*.cpp')
[ ${#files[@]} -gt 0 ] || exit 0
printf '%s\0' "${files[@]}" |
    xargs -0 -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet \
        --extra-arg=-Wno-unknown-warning-option 2>/dev/null
