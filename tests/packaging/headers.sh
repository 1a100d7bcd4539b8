#!/bin/sh
# headers.sh PREFIX SOURCE COMPILER: every public header is installed, and each compiles on its own, twice in a row, in
# every C++ standard since 11, with nothing but the system's headers beside it. Those for C programs also in C11, and
# those for C++ only (.hpp) since C++17.
set -eu
prefix=$1
source=$2
compiler=$3

for folder in "$source/include" "$source/frontend/include"; do
  (cd "$folder" && find tembra -name '*.h*')
done | sort >headers.$$
trap 'rm -f headers.$$' EXIT
(cd "$prefix/include" && find . -type f | sed 's|^\./||' | sort) | diff headers.$$ -
test "$(wc -l <headers.$$)" -ge 9

while read -r header; do
  case $header in
    *.hpp) standards='17 20' ;;
    *) standards='11 14 17 20' ;;
  esac
  for standard in $standards; do
    echo "$header: c++$standard"
    printf '#include <%s>\n#include <%s>\n' "$header" "$header" |
      "$compiler" -std=c++$standard -Wall -Wextra -Wpedantic -Wconversion -Werror -fsyntax-only -I"$prefix/include" \
        -x c++ -
  done
done <headers.$$

for header in tembra/service.h tembra/version.h $(cd "$source/frontend/include" && echo tembra/*.h); do
  echo "$header: c11"
  printf '#include <%s>\n#include <%s>\n' "$header" "$header" |
    "$compiler" -std=c11 -Wall -Wextra -Wpedantic -Wconversion -Wc++-compat -Werror -fsyntax-only \
      -I"$prefix/include" -x c -
done
