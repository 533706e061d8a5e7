#!/bin/sh
# Installs what is missing, builds and runs every test. The last line counts them.
# ./test.sh sanitize: the same under the address and undefined-behaviour sanitizers.
set -eu
cd "$(dirname "$0")"
preset=${1:-release}

scripts/install_packages.sh packaging/debian-packages.txt packaging/debian-packages-test.txt
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
log=build/$preset/test.log
status=0
ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)" >"$log" 2>&1 || status=$?
grep -vE '^ *([0-9]+/[0-9]+ Test|Start) .*(Passed|[0-9]+:|: ).*$' "$log" || true
total=$(sed -n 's/.*tests failed out of \([0-9]*\)$/\1/p' "$log")
failed=$(sed -n 's/.*, \([0-9]*\) tests failed out of.*/\1/p' "$log")
echo "$(( ${total:-0} - ${failed:-0} )) passed, ${failed:-0} failed"
[ "${total:-0}" -gt 0 ] || status=1
exit "$status"
