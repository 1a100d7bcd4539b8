#!/usr/bin/env bash
# usage: tidy.sh RUN_CLANG_TIDY COMPILER FOLDER, in the project's folder; checks every file that is compiled, several at
# a time in one translation unit: most of the cost is in the headers, which are then looked at once for all of them
set -euo pipefail
rm -rf "$3"
cmake -S . -B "$3" -G Ninja -DCMAKE_CXX_COMPILER="$2" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DCMAKE_UNITY_BUILD=ON \
  -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 >"$3.log"
# The checker takes its settings from above the file it is given, which is a unit in that folder.
cp .clang-tidy "$3/"
cp tests/.clang-tidy "$3/tests/"
cp fuzz/.clang-tidy "$3/fuzz/"
"$1" -quiet -p "$3" -j "$(nproc)" >>"$3.log" 2>/dev/null || {
  grep -E "(warning|error):" "$3.log" | sort -u
  exit 1
}
