#!/bin/sh
# source_path.sh PREFIX SOURCE: nothing that is installed tells where it was built.
set -eu
told=$(grep --recursive --files-with-matches --fixed-strings "$2/" "$1") || exit 0
echo "These files name $2: $told"
exit 1
