#!/bin/sh
# Installs the Debian packages named in the given lists that are missing; asks nothing.
set -eu

missing=""
for name in $(sed 's/#.*//' "$@"); do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null || true)
    [ "$state" = installed ] || missing="$missing $name"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" = 0 ]; then as_root=""; else as_root="sudo"; fi
if [ -n "$as_root" ] && ! command -v sudo >/dev/null; then
    echo "These packages are missing; please install them as root:$missing" >&2
    exit 1
fi
echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
# shellcheck disable=SC2086 # a list of words
$as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends $missing >/dev/null
