#!/bin/sh
# versions.sh SOURCE_FOLDER VERSION: what tells a version by hand tells the one of <tembra/version.h>, and both changelogs
# whether it is still in preparation.
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

# counts FILE TEXT: 1 when the first heading of the file has the text, else 0.
counts() { grep -E '^(## |tembra-assoc )' "$source/$1" | head -n 1 | grep -c "$2" || true; }

if [ "$(counts CHANGELOG.md 'in preparation')" != "$(counts debian/changelog UNRELEASED)" ]; then
  echo "CHANGELOG.md says \"in preparation\", or debian/changelog UNRELEASED, without the other" >&2
  exit 1
fi
