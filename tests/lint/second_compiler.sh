#!/usr/bin/env bash
# usage: second_compiler.sh COMPILER BUILD_FOLDER, in the project's folder; builds all but the tests
set -euo pipefail
cmake -S . -B "$2" -G Ninja -DCMAKE_CXX_COMPILER="$1" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DTEMBRA_TESTS=OFF \
  -DCMAKE_BUILD_TYPE=Release
cmake --build "$2"
