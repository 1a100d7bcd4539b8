#!/bin/bash
# platform_check.sh SOURCE WORK: the command of platform/PORTING.md that compiles tembra-platform-check by hand, with a
# router's own libraries in place of the stand-ins. What these do not give is found.
set -euo pipefail
source=$1
mkdir -p "$2"
work=$(cd "$2" && pwd)
cd "$source"

# The router's files, its Depot library with them. The compiler stands for the router's, and keeps what it was asked.
root=$work/root
mkdir -p "$root/usr/lib/pkgconfig" "$root/usr/include"
for library in router:own_platform routerjson:own_json; do
  g++ -std=c++11 -fPIC -shared -Iinclude "tests/packaging/${library#*:}.cpp" -o "$root/usr/lib/lib${library%:*}.so"
done
ln --symbolic --force "$(g++ -print-file-name=libqdbm.so)" "$root/usr/lib/libqdbm.so"
ln --symbolic --force --no-dereference "$(pkg-config --variable=includedir qdbm)" "$root/usr/include/qdbm"
cp "$(pkg-config --variable=pcfiledir qdbm)/qdbm.pc" "$root/usr/lib/pkgconfig"
printf '#!/bin/sh\necho "$@" >"%s"\nexec g++ "$@"\n' "$work/asked" >"$work/compiler"
chmod +x "$work/compiler"

# shellcheck disable=SC2016 # the page's own text
command=$(sed --quiet '/^export CXX=/,/-o tembra-platform-check$/p' platform/PORTING.md)
command=${command/CXX=arm-linux-gnueabihf-g++/CXX=$work/compiler}
ROOT=$root sh -euc "${command/-o tembra-platform-check/-o $work/tembra-platform-check}"
grep --quiet --fixed-strings -- "-I$root/usr/include/qdbm" "$work/asked" || { cat "$work/asked"; exit 1; }

status=0
said=$(LD_LIBRARY_PATH=$root/usr/lib "$work/tembra-platform-check" | grep -v '^log ') || status=$?
expected='FAULT   DevtypeEnumToStr: tried the name of 60; expected "GenericDevice"; came "own type 60"'
[[ $status == 1 && $said == *"$expected"* && $said == *"ok      Depot library:"* ]] || { echo "$status: $said"; exit 1; }
