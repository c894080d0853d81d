#!/bin/sh
# Installs a build into a folder, moves that, and builds and runs programs with what is there and nothing else of ours.
#
#   tests/installed.sh BUILD
set -eu
source=$(cd "$(dirname "$0")/.." && pwd)
place=$1/installed
moved=$place/moved
rm -rf "$place"
mkdir -p "$place/program"
cmake --install "$1" --prefix "$place/first" > "$place/log"
mv "$place/first" "$moved"
if readelf -d "$moved"/bin/qv8 "$moved"/lib/libQv8*.so | grep -E 'RPATH|RUNPATH' | grep -vF '[$ORIGIN'; then
  echo "FAILED: libraries are looked for where they were built"
  exit 1
fi

cp "$source"/packaging/check/CMakeLists.txt "$source/packaging/samples/lighter.c" "$place/program"
cmake -S "$place/program" -B "$place/program" -DCMAKE_PREFIX_PATH="$moved" >> "$place/log"
cmake --build "$place/program" >> "$place/log"
export PKG_CONFIG_PATH="$moved/lib/pkgconfig" LD_LIBRARY_PATH="$moved/lib"
# shellcheck disable=SC2046 # several flags
cc "$source/packaging/samples/lighter.c" $(pkg-config --cflags --libs qv8effect) -o "$place/program/by_pkg_config"

"$moved/bin/qv8" copy-image "$source/samples/landscape.png" "$place/picture.bmp"
"$moved/bin/qv8" rgb-gamma --red -0.5 --green -0.5 --blue -0.5 "$place/picture.bmp" "$place/expected.bmp"
for program in lighter lighter_static by_pkg_config; do
  "$place/program/$program" "$place/picture.bmp" "$place/$program.bmp" > "$place/told"
  echo "$program: $(tr '\n' ' ' < "$place/told")"
  cmp "$place/$program.bmp" "$place/expected.bmp"
done
