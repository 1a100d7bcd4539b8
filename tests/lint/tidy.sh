#!/usr/bin/env bash
# usage: tidy.sh RUN_CLANG_TIDY BUILD_FOLDER, in the project's folder; checks every file that the build compiles
set -euo pipefail
"$1" -quiet -p "$2" -j "$(nproc)" "^$PWD/(src|platform|frontend|sim|cli|tests|tools)/" >"$2/tidy.log" 2>/dev/null || {
  grep -E "(warning|error):" "$2/tidy.log" | sort -u
  exit 1
}
