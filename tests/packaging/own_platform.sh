#!/bin/sh
# own_platform.sh PREFIX WORK COMPILER [FLAG...]: definitions of the router's functions win over the stand-ins, in the
# program itself and in a shared library that stands before them. A StrToDevType that takes char* wins with the lines of
# platform/PORTING.md before it.
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
libs="$(pkg-config --libs tembra-assoc) -Wl,-rpath,$(pkg-config --variable=libdir tembra-assoc) -Wl,-rpath,$work"

# shellcheck disable=SC2016 # the page's own marks
sed --quiet '/^```cpp$/,/^```$/{/^```/!p}' "$source/../../platform/PORTING.md" >"$work/between.cpp"

# shellcheck disable=SC2086 # several words each
{
  "$compiler" -std=c++11 "$@" $cflags "$source/who_is_called.cpp" -o "$work/stand-ins" $libs
  "$compiler" -std=c++11 "$@" $cflags "$source/who_is_called.cpp" "$source/own_platform.cpp" -o "$work/in-program" $libs
  "$compiler" -std=c++11 "$@" $cflags -fPIC -shared "$source/own_platform.cpp" -o "$work/librouter.so"
  "$compiler" -std=c++11 "$@" $cflags "$source/who_is_called.cpp" -o "$work/in-library" -Wl,--no-as-needed \
    -L"$work" -lrouter $libs
  "$compiler" -std=c++11 "$@" $cflags -fPIC -shared "$source/plain_text_platform.cpp" -o "$work/libplain.so"
  "$compiler" -std=c++11 "$@" $cflags -fPIC -shared "$work/between.cpp" -o "$work/libbetween.so" -L"$work" -lplain
  "$compiler" -std=c++11 "$@" $cflags "$source/whose_number.cpp" -o "$work/in-between" -Wl,--no-as-needed \
    -L"$work" -lbetween -lplain $libs
}

# expect PROGRAM LINE...: the program prints exactly these lines.
expect() {
  program=$1
  shift
  echo "$program"
  "$work/$program" >"$work/$program.said"
  printf '%s\n' "$@" | diff "$work/$program.said" -
}

export TEMBRA_LOG=off
expect stand-ins 'name Siren #3'
expect in-program 'log 1 send to mesh server Not Implemented' 'name own type 42 #3'
expect in-library 'log 1 send to mesh server Not Implemented' 'name own type 42 #3'
expect in-between 'number 77'
