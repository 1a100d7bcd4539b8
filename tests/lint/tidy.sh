#!/usr/bin/env bash
# usage: tidy.sh RUN_CLANG_TIDY COMPILER FOLDER, in the project's folder; checks every file that is compiled, several at
# a time in one translation unit: most of the cost is in the headers, which are then looked at once for all of them
set -euo pipefail
rm -rf "$3"
mkdir -p "$(dirname "$3")"
cmake -S . -B "$3" -G Ninja -DCMAKE_CXX_COMPILER="$2" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DCMAKE_UNITY_BUILD=ON \
  -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DTEMBRA_BENCH=ON >"$3.log"
python3 "$(dirname "${BASH_SOURCE[0]}")/merge_units.py" "$3"
# The checker takes its settings from above the file it is given, which is a unit in that folder.
cp .clang-tidy "$3/"
for folder in tests bench fuzz tools; do cp $folder/.clang-tidy "$3/$folder/"; done
"$1" -quiet -p "$3" -j "$(nproc)" >>"$3.log" 2>/dev/null || {
  grep -E "(warning|error):" "$3.log" | sort -u
  exit 1
}
