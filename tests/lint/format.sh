#!/usr/bin/env bash
# usage: format.sh CLANG_FORMAT, in the project's folder
set -euo pipefail
# shellcheck source=tests/lint/sources.sh
source tests/lint/sources.sh
mapfile -t files < <(cpp_files '*.h' '*.hpp' '*.cpp' '*.c')
((${#files[@]} > 50)) || { echo "only ${#files[@]} files found"; exit 1; }
"$1" --dry-run --Werror "${files[@]}"
