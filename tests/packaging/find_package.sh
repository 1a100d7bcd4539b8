#!/bin/sh
# find_package.sh CMAKE PREFIX WORK COMPILER [FLAG...]: a front end that is built by CMake finds the package, compiles
# without a warning in every C++ standard since 11, links and runs.
set -eu
source=$(dirname "$0")
cmake=$1
prefix=$2
work=$3
compiler=$4
shift 4

rm -rf "$work"
"$cmake" -S "$source/cmake_front_end" -B "$work" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_CXX_FLAGS="$*" -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
"$cmake" --build "$work"
for standard in 11 14 17 20; do
  "$work/front-end-$standard"
done
