#!/bin/sh
# hardening.sh LIBRARY: fails unless the shared object was built to resist what a fault could be used for.
set -eu
library=$1
status=0

# expect WHAT PATTERN TEXT
expect() {
  printf '%s\n' "$3" | grep -Eq "$2" || {
    echo "no $1"
    status=1
  }
}

dynamic=$(readelf --dynamic --wide "$library")
segments=$(readelf --program-headers --wide "$library")
imports=$(nm --dynamic --undefined-only "$library")
expect "read-only relocations" 'GNU_RELRO' "$segments"
expect "binding at once" 'BIND_NOW' "$dynamic"
expect "protection against unloading" 'NODELETE' "$dynamic"
expect "stack without execution" 'GNU_STACK.* RW ' "$segments"
expect "stack protector" '__stack_chk_fail' "$imports"
expect "checked calls of the C library" '__(v?snprintf|v?fprintf|memcpy|strncpy|memset)_chk' "$imports"
if printf '%s\n' "$dynamic" | grep -q TEXTREL; then
  echo "relocations in the program text"
  status=1
fi
if printf '%s\n' "$segments" | grep -Eq 'LOAD.* RWE '; then
  echo "memory that is both written and executed"
  status=1
fi
exit $status
