#!/bin/bash
# platform_check.sh SOURCE WORK: the command of platform/PORTING.md that compiles tembra-platform-check by hand, with a
# router's own libraries in place of the stand-ins. What these do not give is found.
set -euo pipefail
source=$1
mkdir -p "$2"
work=$(cd "$2" && pwd)
cd "$source"

for library in router:own_platform routerjson:own_json; do
  g++ -std=c++11 -fPIC -shared -Iinclude "tests/packaging/${library#*:}.cpp" -o "$work/lib${library%:*}.so"
done
# shellcheck disable=SC2016 # the page's own text
command=$(sed --quiet '/^\$CXX .*tools\/platform_check/,/-o tembra-platform-check$/p' platform/PORTING.md)
test -n "$command"
CXX=g++ LIBRARIES=$work bash -euo pipefail -c "${command/-o tembra-platform-check/-o $work/tembra-platform-check}"

status=0
said=$(LD_LIBRARY_PATH=$work "$work/tembra-platform-check" | grep -v '^log ') || status=$?
expected='FAULT   DevtypeEnumToStr: tried the name of 60; expected "GenericDevice"; came "own type 60"'
[[ $status == 1 && $said == *"$expected"* && $said == *"ok      Depot library:"* ]] || { echo "$status: $said"; exit 1; }
