#!/bin/sh
# libraries.sh PREFIX MAJOR: the installed libraries carry the major version in their names, find each other wherever
# the tree stands, and bind nothing to themselves, so that a program's own definitions win.
set -eu
cd "$1"
major=$2

for name in libTembraAssoc libTembraPlatform; do
  library=$(find . -name "$name.so")
  dynamic=$(readelf -dW "$library")
  echo "$library: $dynamic"
  echo "$dynamic" | grep -q "soname: \[$name\.so\.$major\]"
  test -e "$(dirname "$library")/$name.so.$major"
  # shellcheck disable=SC2016 # the dynamic linker expands it, not the shell
  echo "$dynamic" | grep -q 'runpath: \[\$ORIGIN\]'
  if echo "$dynamic" | grep -Eq 'SYMBOLIC|TEXTREL'; then exit 1; fi
done
