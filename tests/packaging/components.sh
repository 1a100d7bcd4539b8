#!/bin/bash
# components.sh CMAKE BUILD WORK LIST: each component, installed alone below a DESTDIR, has the files of LIST, and
# together the components are the whole. The one for development is all that pkg-config asks for. In LIST capitals stand
# for folders that differ between systems and for the version, and "*" for all files of a folder.
set -euo pipefail
cmake=$1
build=$2
work=$3
list=$4

# value VARIABLE
value() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }
libraries=$(value CMAKE_INSTALL_LIBDIR)
commands=$(value CMAKE_INSTALL_LIBEXECDIR)

# installed_files OPTION...: what cmake --install puts below DESTDIR, by names that do not depend on the machine.
installed_files() {
  rm -rf "$work"
  DESTDIR=$work "$cmake" --install "$build" --prefix /opt/tembra "$@" >/dev/null
  (cd "$work/opt/tembra" && find . ! -type d) |
    sed "s|^\./||; s|^lib/python3/[^/]*/tembra/.*|PYTHON/*|; s|^$libraries/|LIB/|; s|^$commands/|LIBEXEC/|
      s|^\(include/tembra\)/.*|\1/*|; s|^\(share/tembra/[a-z]*\)/.*|\1/*|; s|^\(share/doc/.*/examples\)/.*|\1/*|
      s|^\(share/man/man[0-9]\)/.*|\1/*|; s|^\(share/bash-completion/completions\)/.*|\1/*|
      s|Targets-[a-z]*\.cmake|Targets.cmake|; s|\.so\.[0-9]*\.[0-9.]*$|.so.VERSION|" | LC_ALL=C sort -u
}

rm -rf "$work"
for component in $(cut -d' ' -f1 "$list" | sort -u); do
  installed_files --component "$component" | sed "s/^/$component /"
done | LC_ALL=C sort >components.$$
trap 'rm -f components.$$' EXIT
diff -u "$list" components.$$

installed_files --component development >/dev/null
PKG_CONFIG_LIBDIR=$(dirname "$(find "$work" -name tembra-assoc.pc)")
export PKG_CONFIG_LIBDIR
for package in "$PKG_CONFIG_LIBDIR"/*.pc; do
  pkg-config --exists --print-errors "$(basename "$package" .pc)"
done

installed_files | diff <(cut -d' ' -f2 "$list" | LC_ALL=C sort -u) -
