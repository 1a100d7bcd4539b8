#!/bin/sh
# release_library.sh CMAKE SOURCE BUILD LAUNCHER: builds the library as it ships, and nothing else. LAUNCHER stands before
# the compiler; empty: none.
set -eu
cmake=$1
source=$2
build=$3
launcher=$4

cd "$source"
"$cmake" --preset release -B "$build" -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" -DTEMBRA_TESTS=OFF -DTEMBRA_PROGRAMS=OFF
"$cmake" --build "$build" --target TembraAssoc
