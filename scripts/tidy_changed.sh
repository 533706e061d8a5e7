#!/bin/bash
# clang-tidy on what changed since the branch left its upstream, headers and tests included; where
# there is no such place, on what the last ten commits touched; on everything when asked:
# scripts/tidy_changed.sh [all | REVISION]
set -euo pipefail
cd "$(dirname "$0")/.."

kinds=('src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h')
base=${1:-$(git merge-base HEAD '@{upstream}' 2>/dev/null || true)}
[ "$base" != "$(git rev-parse HEAD)" ] || base=
[ -n "$base" ] || base=$(git rev-parse -q --verify 'HEAD~10' || echo all)
if [ "$base" = all ]; then
    changed=$(git ls-files -- "${kinds[@]}")
else
    changed=$(git diff --name-only --diff-filter=d "$base" -- "${kinds[@]}")
fi

# A header is seen through a source that includes it: the one of its own unit, if there is one.
source_of() {
    case "$1" in
    *.cpp) echo "$1" ;;
    *) if [ -e "${1%.h}.cpp" ]; then echo "${1%.h}.cpp"; else
        git grep -lF "#include \"${1#*/}\"" -- 'src/*.cpp' 'tests/*.cpp' | sed -n 1p
    fi ;;
    esac
}
for file in $changed; do
    source_of "$file" || true
done | sort -u | grep -v -e '^tests/fuzz/' -e "libs/.*_windows.cpp" |
    xargs -r -d '\n' -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet \
        --extra-arg=-Wno-unknown-warning-option 2>/dev/null
