#!/usr/bin/env bash
# abi.sh [--store] BUILD: the libraries of a build with all debug information have the binary interface that is stored for
# their architecture in packaging/abi. docs/abi.md says when a difference may be stored. Takes the project's folder as the
# current one.
set -euo pipefail
store=
if [[ $1 == --store ]]; then
  store=yes
  shift
fi
build=$1
status=0

# describe LIBRARY: the functions and variables that it exports and the types that they use, as public headers have them.
describe() {
  abidw --exported-interfaces-only --headers-dir "$PWD/include" --headers-dir "$PWD/frontend/include" --drop-private-types \
    --no-show-locs --no-corpus-path --no-comp-dir-path --no-elf-needed "$1"
}

for library in "$build"/lib/*.so; do
  name=$(basename "$library" .so)
  describe "$library" >"$build/$name.abi"
  architecture=$(sed -n "s/^<abi-corpus .*architecture='\([^']*\)'.*/\1/p" "$build/$name.abi")
  stored=packaging/abi/$architecture/$name.abi
  if [[ -n $store ]]; then
    mkdir -p "${stored%/*}"
    cp "$build/$name.abi" "$stored"
  elif [[ ! -d ${stored%/*} ]]; then
    echo "There is no description for $architecture in packaging/abi: $name is not compared; abi.sh --store stores one."
  elif [[ ! -e $stored ]]; then
    echo "$stored is missing; abi.sh --store makes it"
    status=1
  else
    abidiff "$stored" "$build/$name.abi" || { echo "$name is not as $stored says"; status=1; }
  fi
done
exit $status
