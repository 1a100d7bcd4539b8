#!/usr/bin/env bash
# abi.sh [--store] BUILD: the libraries of a build with all debug information have the binary interface that is stored for
# their CPU in packaging/abi. Where two CPUs have the same one, the second has a link. docs/abi.md says when a difference
# may be stored. Takes the project's folder as the current one.
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

# cpu_of DESCRIPTION
cpu_of() {
  local architecture
  architecture=$(sed -n "s/^<abi-corpus .*architecture='\([^']*\)'.*/\1/p" "$1")
  case $architecture in
    elf-amd-x86_64) echo x86-64 ;;
    elf-intel-80386) echo i386 ;;
    elf-arm) echo armhf ;;
    elf-arm-aarch64) echo arm64 ;;
    elf-mips-*) echo mipsel ;; # abidw calls it so whatever the order of bytes
    *) echo "$architecture" ;;
  esac
}

# store DESCRIPTION STORED: as a link to what another CPU has, if that is the same.
store() {
  local other
  mkdir -p "${2%/*}"
  rm -f "$2"
  for other in packaging/abi/*/"${2##*/}"; do
    if [[ -f $other && ! -L $other ]] && abidiff --no-architecture "$other" "$1" >/dev/null; then
      ln -s "../${other#packaging/abi/}" "$2"
      return
    fi
  done
  cp "$1" "$2"
}

for library in "$build"/lib/*.so; do
  name=$(basename "$library" .so)
  describe "$library" >"$build/$name.abi"
  cpu=$(cpu_of "$build/$name.abi")
  stored=packaging/abi/$cpu/$name.abi
  if [[ -n $store ]]; then
    store "$build/$name.abi" "$stored"
  elif [[ ! -d ${stored%/*} ]]; then
    echo "There is no description for $cpu in packaging/abi: $name is not compared; abi.sh --store stores one."
  elif [[ ! -e $stored ]]; then
    echo "$stored is missing; abi.sh --store makes it"
    status=1
  else
    abidiff --no-architecture "$stored" "$build/$name.abi" || { echo "$name is not as $stored says"; status=1; }
  fi
done
exit $status
