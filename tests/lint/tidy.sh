#!/usr/bin/env bash
# usage: tidy.sh RUN_CLANG_TIDY COMPILER FOLDER, in the project's folder; checks every file that is compiled, with the
# compile commands of a build of its own: the checker cannot read the other compiler's precompiled headers
set -euo pipefail
cmake -S . -B "$3" -G Ninja -DCMAKE_CXX_COMPILER="$2" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >"$3.log"
"$1" -quiet -p "$3" -j "$(nproc)" "^$PWD/(src|platform|frontend|sim|cli|tests|tools)/" >>"$3.log" 2>/dev/null || {
  grep -E "(warning|error):" "$3.log" | sort -u
  exit 1
}
