#!/bin/sh
# pkg_config.sh PREFIX WORK COMPILER [FLAG...]: a front end that is built by pkg-config, in every C++ standard since 11,
# compiles without a warning, links and runs.
set -eu
source=$(dirname "$0")
prefix=$1
work=$2
compiler=$3
shift 3

mkdir -p "$work"
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name tembra-assoc.pc)")
export PKG_CONFIG_PATH
cflags=$(pkg-config --cflags tembra-assoc)
libs=$(pkg-config --libs tembra-assoc)
libdir=$(pkg-config --variable=libdir tembra-assoc)

for standard in 11 14 17 20; do
  echo "c++$standard"
  # shellcheck disable=SC2086 # several words each
  "$compiler" -std=c++$standard -Wall -Wextra -Wpedantic -Wconversion -Werror "$@" $cflags "$source/front_end.cpp" \
    -o "$work/front-end-$standard" $libs -Wl,-rpath,"$libdir"
  "$work/front-end-$standard"
done
