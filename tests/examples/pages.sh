#!/bin/sh
# pages.sh SOURCE: the C++ programs of the pages are the examples, letter for letter.
set -eu
cd "$1"
shown() {
  # shellcheck disable=SC2016 # nothing is to be expanded
  sed -n '/^```cpp$/,/^```$/p' "$1" | sed '/^```/d'
}
shown README.md | diff - examples/minimal.cpp
shown docs/front-end.md | diff - examples/plain.cpp
