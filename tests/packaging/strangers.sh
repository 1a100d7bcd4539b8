#!/usr/bin/env bash
# strangers.sh WORK: the library and the kit build for whoever packages them, by plain CMake and without a preset. They
# build in every build type, by every compiler of the floor, and without the parts that a router does not want. Their
# bytes are the same from any folder. Warnings are errors here, for the project's own eyes. Takes the project's folder as
# the current one.
#
# Each library is one unit: most of what compiling it takes is in the headers.
set -euo pipefail
source=$PWD
work=$1
rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)

fail() {
  echo "strangers: $*" >&2
  exit 1
}

# logged COMMAND...: what it says is of interest only when it fails.
logged() {
  local log
  log=$(mktemp "$work/log-XXXXXX")
  "$@" >"$log" 2>&1 || { cat "$log" >&2; fail "$*"; }
}

# configure NAME TYPE COMPILER [OPTION...]
configure() {
  logged cmake -S "$source" -B "$work/$1" -G Ninja -DCMAKE_BUILD_TYPE="$2" -DCMAKE_CXX_COMPILER="$3" -DTEMBRA_TESTS=OFF \
    -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DTEMBRA_UNITY_LIBRARIES=ON \
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON "${@:4}"
}

# build NAME TYPE COMPILER [OPTION...]: library and kit.
build() {
  echo "$*"
  configure "$@" -DTEMBRA_PROGRAMS=OFF
  logged cmake --build "$work/$1" --parallel
}

# both BUILD -- BUILD: two builds at a time, because a library is one unit, which keeps one processor busy.
both() {
  local first=()
  while [[ $1 != -- ]]; do
    first+=("$1")
    shift
  done
  "${first[@]}" &
  local number=$!
  "${@:2}"
  wait $number
}

# installed NAME COMPONENT...: the folder with these components.
installed() {
  local component
  for component in "${@:2}"; do
    DESTDIR=$work/$1/stage logged cmake --install "$work/$1" --component "$component"
  done
  echo "$work/$1/stage/usr"
}

# refuse_configuring TEXT OPTION...: these options do not go together, and the answer says so.
refuse_configuring() {
  if cmake -S "$source" -B "$work/refused" -G Ninja -DTEMBRA_TESTS=OFF "${@:2}" >"$work/log" 2>&1; then
    fail "configures: ${*:2}"
  fi
  [[ $(tr --squeeze-repeats ' \n' ' ' <"$work/log") == *"$1"* ]] || { cat "$work/log"; fail "does not say: $1"; }
}

# Build types, and the compilers and C++ libraries of the floor. The most optimisation sees the most.
both build release Release clang++-14 -- build small MinSizeRel g++-11
build debug Debug clang++-14 -DCMAKE_CXX_FLAGS=-stdlib=libc++
for name in release small debug; do
  if grep --quiet 'std=[^ ]*2[0-9a-z]' "$work/$name/build.ninja"; then fail "$name asks for more than C++17"; fi
done
configure stand-ins Release g++
logged cmake --build "$work/stand-ins" --target TembraPlatform

# The router's own libraries in place of the stand-ins, by name: nothing of the stand-ins is built or installed.
g++ -std=c++11 -fPIC -shared -Iinclude tests/packaging/own_platform.cpp tests/packaging/own_json.cpp -o "$work/librouter.so"
LDFLAGS=-L$work build own-platform Release g++ -DTEMBRA_STAND_INS=OFF -DTEMBRA_PLATFORM_LIBRARIES=router
root=$(installed own-platform runtime development)
stand_ins=$(find "$work/own-platform" -name '*TembraPlatform.so*' -o -name 'nvram_get' -o -name 'json_tokens*')
[[ -z $stand_ins ]] || fail "built or installed without being asked for: $stand_ins"
[[ $(readelf --dynamic "$root"/lib/*/libTembraAssoc.so) == *NEEDED*librouter.so* ]] || fail "librouter.so is not linked"
PKG_CONFIG_PATH=$(dirname "$(find "$root" -name tembra-assoc.pc)")
export PKG_CONFIG_PATH
read -ra flags <<<"$(pkg-config --cflags --libs tembra-frontend)"
g++ -std=c++11 -o "$work/who-is-called" tests/packaging/who_is_called.cpp "${flags[@]}" -L"$work"
said=$(LD_LIBRARY_PATH=$work:$(pkg-config --variable=libdir tembra-assoc) "$work/who-is-called")
[[ $said == *"own type 42 #3"* ]] || fail "the router's library is not called"

# Nobody said which libraries they are: the front end brings them.
build open-platform "" g++ -DTEMBRA_STAND_INS=OFF
refuse_configuring "set TEMBRA_PLATFORM_LIBRARIES" -DTEMBRA_STAND_INS=OFF
refuse_configuring "TEMBRA_STAND_INS=ON" -DTEMBRA_STAND_INS=OFF -DTEMBRA_TESTS=ON -DTEMBRA_PROGRAMS=OFF
refuse_configuring "TEMBRA_FRONTEND=ON" -DTEMBRA_FRONTEND=OFF -DTEMBRA_TESTS=ON

# The programs without the kit are the simulated router and tembra-isolate.
configure no-kit Release g++ -DTEMBRA_FRONTEND=OFF
targets=$(cmake --build "$work/no-kit" --target help)
[[ $targets == *tembra-sim:* && $targets != *tembra-assoc:* && $targets != *TembraFrontend* ]] ||
  fail "not what is built without the kit: $targets"

# The same bytes from any folder, with all debug information.
mkdir -p "$work/elsewhere/sources"
cp --recursive CMakeLists.txt cmake depot examples frontend include packaging platform src "$work/elsewhere/sources"
build_elsewhere() {
  local source=$work/elsewhere/sources
  build elsewhere/build RelWithDebInfo g++
}
both build here RelWithDebInfo g++ -- build_elsewhere
for name in here elsewhere/build; do
  root=$(installed $name runtime development stand-ins lua)
  (cd "$root" && find . -type f -exec sha256sum {} +) | sort >"$work/${name%/*}.hashes"
done
diff "$work/here.hashes" "$work/elsewhere.hashes" || fail "the folder is told by these files"
