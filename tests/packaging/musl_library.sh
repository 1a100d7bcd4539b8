#!/usr/bin/env bash
# musl_library.sh WORK: library and kit compile with the headers of musl, the C library of most small routers, and they
# call no function that musl lacks. The compiler is clang with the headers of its C++ library, which know any C library.
# Nothing is run: musl.sh has a C++ library built for musl, and is nightly. Takes the project's folder as the current one.
set -euo pipefail
mkdir -p "$1"
work=$(cd "$1" && pwd)
clang=/usr/lib/llvm-14
musl=/usr/lib/x86_64-linux-musl

fail() {
  echo "musl: $*" >&2
  exit 1
}

# logged COMMAND...: what it says is of interest only when it fails.
logged() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "$*"; }
}

# Like the router's functions, the C++ runtime and the Depot library are left open.
printf 'Name: qdbm\nDescription: Depot\nVersion: 1.8.78\nCflags: -I/usr/include/qdbm\nLibs:\n' >"$work/qdbm.pc"
headers="-isystem $clang/include/c++/v1 -isystem /usr/include/x86_64-linux-musl"
PKG_CONFIG_LIBDIR=$work logged cmake -S . -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=MinSizeRel -DCMAKE_SYSTEM_NAME=Linux \
  -DCMAKE_C_COMPILER="$clang/bin/clang" -DCMAKE_C_COMPILER_TARGET=x86_64-linux-musl \
  -DCMAKE_CXX_COMPILER="$clang/bin/clang++" -DCMAKE_CXX_COMPILER_TARGET=x86_64-linux-musl \
  -DCMAKE_C_FLAGS="-nostdlibinc -isystem /usr/include/x86_64-linux-musl" \
  -DCMAKE_CXX_FLAGS="-nostdlibinc -D_LIBCPP_HAS_MUSL_LIBC $headers" -DCMAKE_SHARED_LINKER_FLAGS="-nodefaultlibs -B$musl" \
  -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY -DCMAKE_COMPILE_WARNING_AS_ERROR=ON -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
  -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DTEMBRA_UNITY_LIBRARIES=ON -DTEMBRA_STAND_INS=OFF \
  -DTEMBRA_PROGRAMS=OFF -DTEMBRA_TESTS=OFF
logged cmake --build "$work/build" --parallel

# A name of C that a library needs is musl's, the association library's or Depot's, whose names begin with dp.
nm --dynamic --defined-only $musl/libc.so "$work/build/lib/libTembraAssoc.so" | sed 's/.* //;s/@.*//' | sort >"$work/known"
for library in TembraAssoc tembra-frontend; do
  nm --dynamic --undefined-only "$work/build/lib/lib$library.so" | sed -n 's/@.*//;s/^ *U //p' |
    grep --invert-match --extended-regexp '^(_Z|__cxa_|__gxx_|_Unwind_|dp[a-z]+$)' | sort >"$work/needed"
  unknown=$(comm -23 "$work/needed" "$work/known" | paste --serial --delimiters=' ')
  [[ -z $unknown ]] || fail "musl lacks what lib$library.so calls: $unknown"
done
