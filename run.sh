#!/bin/sh
# Installs what is missing, builds Vaultline ZR5 and opens it. Without a display it shows a tour
# on a virtual one instead: an encryption, a check and a decryption, with screenshots in build/tour/.
set -eu
cd "$(dirname "$0")"

scripts/install_packages.sh packaging/debian-packages.txt
cmake --preset release >/dev/null
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    cmake --build --preset release --target zr5e
    exec build/release/bin/zr5e
fi
cmake --build --preset release --target zr5e-tour
echo "There is no display here. A tour of the program runs on a virtual one instead ..."
rm -rf build/tour
mkdir -p build/tour
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24" \
    build/release/bin/zr5e-tour build/tour
echo "Screenshots and the report are in build/tour/."
