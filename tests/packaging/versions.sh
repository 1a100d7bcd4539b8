#!/bin/sh
# versions.sh SOURCE_FOLDER VERSION: what tells a version by hand tells the one of <tembra/version.h>.
set -eu
source=$1
version=$2

# tells FILE PATTERN: the first line of FILE with PATTERN's text has the version behind it.
tells() {
  told=$(sed -n "s/^$2\([0-9.]*\).*/\1/p" "$source/$1" | head -n 1)
  [ "$told" = "$version" ] || { echo "$1 says \"$told\", <tembra/version.h> says $version" >&2; exit 1; }
}

tells CHANGELOG.md '## '
tells debian/changelog 'tembra-assoc ('
