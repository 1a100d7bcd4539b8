#!/bin/sh
# names.sh LIBRARY COMPILER PROGRAM...: the check of docs/front-end.md finds a global that a program shares with the
# library, and finds none in the programs.
set -eu
library=$1
compiler=$2
shift 2
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

nm --dynamic --defined-only "$library" | cut -d' ' -f3 | grep -v '^_Z\|^tembra_' | LC_ALL=C sort >"$work/names"
shared() {
  nm --extern-only --defined-only "$1" | cut -d' ' -f3 | LC_ALL=C sort | LC_ALL=C comm -12 "$work/names" -
}

echo 'int idle = 77; static int buff; int main() { return idle + buff; }' |
  "$compiler" -x c++ -c -o "$work/clash.o" -
test "$(shared "$work/clash.o")" = idle
for program; do
  found=$(shared "$program")
  test -z "$found" || { echo "$program shares with the library: $found" && exit 1; }
done
