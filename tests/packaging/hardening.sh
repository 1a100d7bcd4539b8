#!/bin/sh
# hardening.sh PREFIX: fails unless every installed object was built to resist what a fault could be used for.
set -eu
prefix=$1
status=0
found=0

fail() {
  echo "$object: $1"
  status=1
}

# expect WHAT PATTERN TEXT
expect() {
  printf '%s\n' "$3" | grep -Eq "$2" || fail "no $1"
}

# refuse WHAT PATTERN TEXT
refuse() {
  if printf '%s\n' "$3" | grep -Eq "$2"; then fail "$1"; fi
}

check_object() {
  segments=$(readelf --program-headers --wide "$object")
  imports=$(nm --dynamic --undefined-only "$object")
  expect "read-only relocations" 'GNU_RELRO' "$segments"
  expect "binding at once" 'BIND_NOW|FLAGS_1.*NOW' "$dynamic"
  expect "stack without execution" 'GNU_STACK.* RW ' "$segments"
  expect "stack protector" '__stack_chk_fail' "$imports"
  refuse "relocations in the program text" 'TEXTREL' "$dynamic"
  refuse "memory that is both written and executed" 'LOAD.* RWE ' "$segments"
  case $object in
    *libtembra-haste.so) return ;; # five functions, of which none copies anything
    */lua/*) ;; # they copy nothing themselves
    *) expect "checked calls of the C library" '__[a-z]+_chk' "$(printf '%s\n' "$imports" | grep -v stack_chk)" ;;
  esac
  if readelf --file-header "$object" | grep -q X86-64; then
    test "$(objdump --disassemble "$object" | grep -c endbr64)" -gt 10 || fail "no protection of branches"
  fi
}

check_program() {
  expect "position-independent code" 'FLAGS_1.*PIE' "$dynamic"
  expect "checks of the C++ library" '__glibcxx_assert_fail' "$imports"
}

objects=$(find "$prefix" -type f \( -perm -u+x -o -name '*.so*' \))
for object in $objects; do
  dynamic=$(readelf --dynamic --wide "$object" 2>/dev/null) || continue
  printf '%s\n' "$dynamic" | grep -q 'Dynamic section' || continue
  found=$((found + 1))
  check_object
  case $object in
    *libTembraAssoc.so*) expect "protection against unloading" 'NODELETE' "$dynamic" ;;
    *.so*) ;;
    *) check_program ;;
  esac
done
test "$found" -ge 2 || { echo "only $found objects found"; exit 1; }
exit $status
