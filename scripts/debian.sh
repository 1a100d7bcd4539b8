#!/usr/bin/env bash
# usage: debian.sh: builds the Debian packages from a copy of the project, lets lintian judge them, and tries them in a
# fresh Debian 12. Everything stays in build/packages. The fresh system comes from where this machine has its own packages.
set -euo pipefail
cd "$(dirname "$(readlink --canonicalize "${BASH_SOURCE[0]}")")/.."
work=$PWD/build/packages
release=bookworm

# logged NAME COMMAND...: what it says is of interest only when it fails.
logged() {
  local started=$SECONDS
  "${@:2}" >"$work/$1.log" 2>&1 || { tail --lines 60 "$work/$1.log" >&2; echo "packages: $1 failed, $work/$1.log" >&2; exit 1; }
  echo "packages: $1 took $((SECONDS - started)) s"
}

# What is not ignored, as a clean checkout has it. Its path is always the same, so that ccache knows the files.
copy() {
  rm --recursive --force "$work"
  mkdir -p "$work/source"
  git ls-files -z --cached --others --exclude-standard | tar --create --null --files-from - |
    tar --extract --directory "$work/source"
}

build() {
  CCACHE_DIR=$(ccache --get-config cache_dir)  # debhelper hides the home folder
  export CCACHE_DIR DEB_BUILD_OPTIONS=noautodbgsym  # nobody looks into these packages
  (cd "$work/source" && PATH=/usr/lib/ccache:$PATH dpkg-buildpackage --no-sign --jobs="$(nproc)")
}

# The Debian archives of this machine; where it has none of that release, the usual one.
archives() {
  apt-get indextargets --format "deb \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" 'Created-By: Packages' 'Origin: Debian' \
    "Architecture: $(dpkg --print-architecture)" | grep " $release" || true
}

# The system stands in a user namespace, and is gone afterwards. Nothing of it is seen on this machine.
try() {
  local sources=()
  [[ -z $(archives) ]] || sources=(-)
  archives | mmdebstrap --mode=unshare --variant=apt --include=mount --format=null \
    --customize-hook="mkdir \"\$1/packages\"" \
    --customize-hook="cp '$work'/*.deb '$PWD/debian/tests/demo' '$PWD/tests/packaging/in_fresh_debian.sh' \"\$1/packages\"" \
    --customize-hook="'$PWD/scripts/in_root.sh' \"\$1\" /packages/in_fresh_debian.sh" "$release" /dev/null "${sources[@]}"
}

copy
logged build build
logged lintian lintian --allow-root --fail-on=error,warning "$work"/*.changes
logged try try
sed --quiet '/^tembra-sim: ready/,/^Removed/p' "$work/try.log"
echo "The packages install, work, and go without a trace."
