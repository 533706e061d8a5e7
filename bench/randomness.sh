#!/bin/bash
# Calibrates the measures of randomness on the files of this machine and prints the tables of
# docs/randomness.md. Usage: bench/randomness.sh [folders to look for files in; default /usr]
# Classes whose tools (gzip, xz, bzip2, zstd, zip, age, ImageMagick's convert, ent) are missing
# are left out.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset release > /dev/null
cmake --build --preset release --target bench_randomness > /dev/null
tool=$PWD/build/release/bin/bench_randomness
[ $# -gt 0 ] || set -- /usr
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# gather CLASS COUNT FIND-EXPRESSION...: files of different content, 16 KiB to 4 MiB, spread over
# all that were found.
gather() {
    local class=$1 count=$2 number=0
    shift 2
    mkdir -p "$work/$class"
    { find "${folders[@]}" -xdev -type f -size +16383c -size -4194304c \( "$@" \) -print0 ||
        true; } 2> /dev/null | { xargs -0 -r md5sum || true; } 2> /dev/null | sort |
        awk -v most="$count" '!seen[$1]++ && n++ < most {print substr($0, 35)}' |
        while IFS= read -r path; do
        number=$((number + 1))
        cp -- "$path" "$work/$class/$number.${path##*.}" 2> /dev/null || true
    done
}
# pack CLASS COMMAND...: what the command makes of each plain file on its standard output.
pack() {
    local class=$1 path
    shift
    command -v "$1" > /dev/null || return 0
    mkdir -p "$work/$class"
    for path in "$work"/plain/*; do
        "$@" < "$path" > "$work/$class/${path##*/}.$class$packed"
    done
}
has() { command -v "$1" > /dev/null; }

folders=("$@")
gather text 300 -name '*.txt' -o -name '*.md' -o -name copyright -o -name '*.pod' -o -name README
gather source 300 -name '*.[ch]' -o -name '*.py' -o -name '*.p[lm]' -o -name '*.js' -o -name '*.html'
gather program 300 -perm -u+x -o -name '*.so*'
for path in "$work"/program/*; do
    [ "$(head -c4 "$path" | tail -c3)" = ELF ] || rm "$path"
done
gather png 300 -name '*.png'
gather jpg 300 -name '*.jpg' -o -name '*.jpeg'
gather deb 300 -name '*.deb'

# What is packed: 100 files of each class that is not.
mkdir "$work/plain"
for class in text source program; do
    find "$work/$class" -type f -size +60k | sort | awk 'NR <= 100' | while IFS= read -r path; do
        cp "$path" "$work/plain/$class-${path##*/}"
    done
done
packed="" pack gz gzip -c
packed=-1 pack gz gzip -1c
packed="" pack xz xz -c
packed="" pack bz2 bzip2 -c
packed="" pack zst zstd -qc
packed=-19 pack zst zstd -19qc
if has zip; then
    mkdir "$work/zip"
    for path in "$work"/plain/*; do (cd "$work/plain" && zip -q "$work/zip/${path##*/}.zip" "${path##*/}"); done
fi
if has age; then
    recipient=$(age-keygen -o "$work/age-key" 2> /dev/null && age-keygen -y "$work/age-key")
    packed="" pack age age -r "$recipient"
    rm "$work/age-key"
fi
if has convert; then
    mkdir "$work/bitmap" "$work/jpg-of-png"
    for path in "$work"/png/* "$work"/jpg/*; do
        name=${path##*/}
        for kind in ppm bmp pgm; do
            convert "$path" -background white -flatten -resize '800x800>' -depth 8 \
                "$work/bitmap/$name.$kind" 2> /dev/null || true
        done
        convert "$path" -background white -flatten -quality 85 "$work/jpg-of-png/$name.jpg" 2> /dev/null || true
    done
fi
find "$work" -type f -size -16384c ! -path "$work/plain/*" -delete
"$tool" make "$work"

find "$work" -mindepth 1 -maxdepth 1 -type d -empty -delete
"$tool" table "$work"
echo
find "$work/text" -type f -print0 | xargs -0 "$tool" buffers
if has ent; then
    echo
    find "$work" -type f -size -2000k ! -name '*Hz*' -print0 | xargs -0 "$tool" entropy |
        while read -r entropy path; do
            echo "$entropy $(ent -t "$path" | awk -F, '$1 == 1 {print $3}') $path"
        done | awk '
            { d = $1 - $2; if (d < 0) d = -d; if (d > most) most = d; files++; if (d >= 0.0005) print }
            END { printf "ent: %d files, largest difference of the entropy %.6f bits a byte\n", files, most }'
fi
