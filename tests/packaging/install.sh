#!/bin/sh
# install.sh CMAKE BUILD PREFIX: installs the build, then moves the tree to PREFIX, where it has to work all the same.
set -eu
cmake=$1
build=$2
prefix=$3

rm -rf "$prefix" "$prefix.first"
"$cmake" --install "$build" --prefix "$prefix.first"
mv "$prefix.first" "$prefix"
