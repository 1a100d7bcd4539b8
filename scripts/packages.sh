# shellcheck shell=bash
# The Debian packages that the project is built and tested with. To be sourced; then: need_packages PACKAGE...

# What building and demonstrating takes.
demo_packages=(g++ cmake ninja-build pkgconf libqdbm-dev libcli11-dev libjsmn-dev nlohmann-json3-dev)

# What measuring takes: the same as building, the framework, and what draws the curves.
bench_packages=("${demo_packages[@]}" libbenchmark-dev gnuplot-nox)

# What testing takes: all that, the test framework, the second compiler, the checkers, and what counts instructions.
# shellcheck disable=SC2034
test_packages=("${bench_packages[@]}" libgtest-dev ccache clang libclang-rt-dev clang-format clang-tidy python3 valgrind)

# What the coverage of the fuzzers' corpora takes: the same as building, the second compiler, and its readers.
# shellcheck disable=SC2034
coverage_packages=("${demo_packages[@]}" clang libclang-rt-dev llvm-14)

is_installed() {
  dpkg-query --show --showformat '${db:Status-Status}\n' "$1" 2>/dev/null | grep --quiet --line-regexp installed
}

# Runs apt-get as root; fails where that is not possible.
apt_get_as_root() {
  local as_root=()
  ((EUID == 0)) || as_root=(sudo)
  local command
  for command in apt-get "${as_root[@]}"; do
    command -v "$command" >/dev/null || return
  done
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "$@"
}

# Installs those of the packages that are missing. Where it cannot, prints them and ends the script with status 1.
need_packages() {
  local package missing=()
  for package; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]} > 0)) || return 0
  echo "Installing ${missing[*]}"
  if apt_get_as_root update && apt_get_as_root install --yes --no-install-recommends "${missing[@]}"; then
    return 0
  fi
  echo "These Debian packages are needed and could not be installed: ${missing[*]}" >&2
  exit 1
}
