#!/bin/bash
# What the build cannot see of the arrows between rooms: the toolkit's headers belong to src/ui
# and src/app/main.cpp, those of OpenSSL, libsodium and the operating system to src/libs, and
# what differs by platform is a whole file.
set -euo pipefail
cd "$(dirname "$0")/.."

wrong=$(
    git grep -nE '#include <Q[A-Z]' -- src ':!src/ui' ':!src/app/main.cpp' || true
    git grep -nE '#include <(openssl/|sodium|sys/|unistd|fcntl|windows)' -- src ':!src/libs' || true
    git grep -nE '^# *if(n?def| +defined)? .*(WIN32|__linux__|__unix__|__APPLE__)' -- src || true
)
[ -z "$wrong" ] && exit 0
printf 'In the wrong room:\n%s\n' "$wrong" >&2
exit 1
