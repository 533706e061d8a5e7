#!/bin/bash
# What the build cannot see of the order of rooms and units: the toolkit's headers belong to src/ui
# and src/app/main.cpp, those of OpenSSL, libsodium and the operating system to src/libs; what
# differs by platform is a whole file; and no units include each other in a circle.
set -euo pipefail
cd "$(dirname "$0")/.."

wrong=$(
    git grep -nE '#include <Q[A-Z]' -- src ':!src/ui' ':!src/app/main.cpp' || true
    git grep -nE '#include <(openssl/|sodium|sys/|unistd|fcntl|windows)' -- src ':!src/libs' || true
    git grep -nE '^# *if(n?def| +defined)? .*(WIN32|__linux__|__unix__|__APPLE__)' -- src || true
)
if [ -n "$wrong" ]; then
    printf 'In the wrong room:\n%s\n' "$wrong" >&2
    exit 1
fi

# A unit is a header with its sources; one that includes another stands above it.
circles=$(git grep -oE '#include "[^"]+"' -- 'src/*.h' 'src/*.cpp' |
    sed -E 's#^src/([^:]*)\.(h|cpp):\#include "([^"]*)\.h"#\1 \3#' |
    awk '$1 != $2' | tsort 2>&1 >/dev/null || true)
if [ -n "$circles" ]; then
    printf 'Units that include each other in a circle:\n%s\n' "$circles" >&2
    exit 1
fi
