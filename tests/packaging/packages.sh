#!/usr/bin/env bash
# packages.sh SOURCE_FOLDER: nothing is installed before somebody at a terminal agrees; everybody is told what is missing
# and which versions the tests have not seen. apt-get and dpkg-query are played.
set -euo pipefail
readonly source=$1

folder=$(mktemp --directory)
trap 'rm --recursive --force "$folder"' EXIT
mkdir "$folder/bin"
export PATH=$folder/bin:$PATH
unset CI

# cmake is installed, in another version than the tested one; ninja-build is not until apt-get was asked for it.
cat >"$folder/bin/dpkg-query" <<PLAYED
#!/bin/sh
case "\$*" in
*Status*ninja-build) test -e "$folder/installed" && echo installed ;;
*Status*) echo installed ;;
*cmake) echo 0.1 ;;
*) sed --quiet "s/^\$4 //p" "$source/scripts/tested-packages" ;;
esac
PLAYED
cat >"$folder/bin/apt-get" <<PLAYED
#!/bin/sh
echo "apt-get \$*"
touch "$folder/installed"
PLAYED
cat >"$folder/bin/sudo" <<'PLAYED'
#!/bin/sh
exec "$@"
PLAYED
cat >"$folder/script" <<PLAYED
set -euo pipefail
source "$source/scripts/packages.sh"
need_packages cmake ninja-build
echo "goes on"
PLAYED
chmod +x "$folder"/bin/*

fail() {
  echo "$1:" >&2
  cat "$folder/said" >&2
  exit 1
}

# expect NAME TEXT...: what was said has these texts; a text that begins with "not " it has not.
expect() {
  local name=$1 text
  for text in "${@:2}"; do
    if [[ $text == "not "* ]]; then
      ! grep --quiet --fixed-strings -- "${text#not }" "$folder/said" || fail "$name: said ${text#not }"
    else
      grep --quiet --fixed-strings -- "$text" "$folder/said" || fail "$name: did not say $text"
    fi
  done
}

readonly missing="These Debian packages are missing: ninja-build"

# at_terminal KEYS COMMAND: with a person who types these keys.
at_terminal() {
  rm --force "$folder/installed"
  printf '%s\n' "$1" | script --quiet --return --command "$2" /dev/null >"$folder/said" 2>&1 || echo "failed" >>"$folder/said"
}

at_terminal n "bash $folder/script"
expect "refused" "$missing" "Install them now" "failed" "not apt-get update" "not goes on"
at_terminal "" "bash $folder/script"
expect "only Enter" "failed" "not apt-get update"
at_terminal y "bash $folder/script"
expect "agreed" "$missing" "apt-get install --yes --no-install-recommends ninja-build" "goes on"
at_terminal n "CI=true bash $folder/script"
expect "continuous integration" "$missing" "apt-get install" "goes on" "not Install them now"
at_terminal n "install_without_asking=1 bash $folder/script"
expect "--yes" "$missing" "apt-get install" "goes on" "not Install them now"

rm --force "$folder/installed"
bash "$folder/script" </dev/null >"$folder/said" 2>&1
expect "no terminal" "$missing" "apt-get install" "goes on" "not Install them now"
bash "$folder/script" </dev/null >"$folder/said" 2>&1
expect "nothing missing" "Other versions than the tested ones: cmake 0.1 (tested: 3." "goes on" "not apt-get" "not ninja-build"

# Help is given before anything is looked at, built or installed.
for script in run-demo run-tests run-bench; do
  "$source/$script" --help >"$folder/said" 2>&1 || fail "$script --help failed"
  expect "$script --help" "usage: ./$script" "--yes" "not set -euo" "not #"
done
if "$source/run-bench" --longer >"$folder/said" 2>&1; then fail "run-bench --longer"; fi
expect "an unknown option" "there is no option --longer" "not mkdir"

# Every script takes --yes, and every package has its tested version.
for script in run-demo run-tests run-bench fuzz/coverage; do
  grep --quiet 'install_without_asking=1' "$source/$script" || { echo "$script does not take --yes" >&2; exit 1; }
done
# shellcheck source=scripts/packages.sh
source "$source/scripts/packages.sh"
# shellcheck disable=SC2154
diff <(printf '%s\n' "${test_packages[@]}" "${debian_packages[@]}" "${coverage_packages[@]}" | LC_ALL=C sort --unique) \
  <(sed '/^#/d;s/ .*//' "$source/scripts/tested-packages" | LC_ALL=C sort)
