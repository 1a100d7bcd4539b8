#!/bin/sh
# exported_symbols.sh LIBRARY LIST: fails when the names that the library exports are not exactly those of the list, each
# with its version. The list is a text of NAME@VERSION lines, or the version script of a library that exports nothing else.
#
# Weak copies of the C++ library's templates are not the library's own: they stand in every shared object that uses them.
set -eu
library=$1
list=$2

cxx_library='^[WV] _Z(TI|TS|TV|GV|Z)*(NK?)?S[tabsiod]'

# The names of a version script.
names_of_script() {
  awk '/^[A-Z].*\{/ { version = "@" $1 }
    /local:/ { exit }
    /;$/ && !/}/ { gsub(/^ *"?|"?;$/, ""); print $0 version }' "$1"
}

case $list in
  *.map) names_of_script "$list" ;;
  *) cat "$list" ;;
esac | LC_ALL=C sort -u >listed.$$
trap 'rm -f listed.$$ exported.$$' EXIT
# Each version is an absolute symbol itself.
nm -D --defined-only "$library" | awk '$2 != "A" { print $2, $3 }' | grep -Ev "$cxx_library" |
  cut -d' ' -f2- | sed 's/@@/@/' | c++filt | LC_ALL=C sort -u >exported.$$

# In the difference: "-" is listed and not exported, "+" is exported and not listed.
diff -u listed.$$ exported.$$
