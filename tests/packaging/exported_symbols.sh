#!/bin/sh
# exported_symbols.sh LIBRARY LIST: fails when the names that the library exports are not exactly those of the list.
#
# Weak copies of the C++ library's templates are not the library's own: they stand in every shared object that uses them.
set -eu
library=$1
list=$2

cxx_library='^[WV] _Z(TI|TS|TV|GV|Z)*(NK?)?S[tabsiod]'

nm -D --defined-only "$library" | awk '{ print $2, $3 }' | grep -Ev "$cxx_library" |
  cut -d' ' -f2- | c++filt | LC_ALL=C sort -u >exported.$$
trap 'rm -f exported.$$' EXIT

# In the difference: "-" is listed and not exported, "+" is exported and not listed.
diff -u "$list" exported.$$
