#!/bin/sh
# search_paths.sh FOLDER...: no program and no library in the folders loads libraries from a folder that depends on where
# it is started. An empty element of a search path means the current directory, and so does a relative one.
set -eu
status=0
found=0

objects=$(find "$@" -type f \( -perm -u+x -o -name '*.so*' \) ! -path '*/CMakeFiles/*')
for object in $objects; do
  dynamic=$(readelf --dynamic --wide "$object" 2>/dev/null) || continue
  found=$((found + 1))
  paths=$(printf '%s\n' "$dynamic" | sed -n 's/.*(R\(UN\)\?PATH).*\[\(.*\)\]$/\2/p')
  # shellcheck disable=SC2016 # the dynamic linker expands it, not the shell
  test -z "$paths" || printf '%s:\n' "$paths" | grep -Eq '^((/[^:]*|\$ORIGIN(/[^:]*)?):)+$' || {
    echo "$object: $paths"
    status=1
  }
done
test "$found" -ge 4 || { echo "only $found objects found"; exit 1; }
exit $status
