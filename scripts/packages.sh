# shellcheck shell=bash
# The Debian packages that the project is built and tested with. To be sourced; then: need_packages PACKAGE...
# install_without_asking, when set, is the script's option --yes.

tested_packages=$(dirname "${BASH_SOURCE[0]}")/tested-packages

# What building and demonstrating takes.
demo_packages=(g++ cmake ninja-build pkgconf libqdbm-dev libcli11-dev libjsmn-dev nlohmann-json3-dev)

# What measuring takes: the same as building, the framework, and what draws the curves.
bench_packages=("${demo_packages[@]}" libbenchmark-dev gnuplot-nox)

# What testing takes besides: the test framework, the second compiler, the oldest compiler and the other C++ library. Then
# the checkers, the reader of manual pages, what counts instructions and compares binary interfaces, another C library, and
# the kit's languages. The last ones read datagrams and complete commands.
# shellcheck disable=SC2034
test_packages=("${bench_packages[@]}" libgtest-dev ccache clang libclang-rt-dev clang-format clang-tidy python3 valgrind
  man-db g++-11 libc++-14-dev libc++abi-14-dev abigail-tools musl-dev lua5.1 lua5.4 liblua5.1-0-dev liblua5.4-dev tshark zsh)

# What building and testing for other CPUs takes besides: their compilers, the emulators, and what starts programs of 32 bits.
# shellcheck disable=SC2034
cross_packages=(g++-i686-linux-gnu g++-arm-linux-gnueabihf g++-aarch64-linux-gnu g++-mipsel-linux-gnu qemu-user-static
  libc6-i386)

# What making the Debian packages takes besides, and trying them: the packagers' tools, and what makes a fresh system.
# shellcheck disable=SC2034
debian_packages=("${demo_packages[@]}" ccache debhelper dh-python dpkg-dev liblua5.1-0-dev liblua5.4-dev lintian mmdebstrap
  python3 uidmap)

# What the coverage of the fuzzers' corpora takes: the same as building, the second compiler, and its readers.
# shellcheck disable=SC2034
coverage_packages=("${demo_packages[@]}" clang libclang-rt-dev llvm-14)

# help_if_asked SCRIPT ARGUMENT...: the comment at the script's beginning, when the first argument asks for help.
help_if_asked() {
  [[ ${2-} == --help || ${2-} == -h ]] || return 0
  sed --quiet '2,${/^#/!q;s/^# \{0,1\}//p}' "$1"
  exit
}

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

# Asks a person at the terminal. Nobody is asked after --yes, in continuous integration and where there is no terminal.
may_install() {
  if [[ -n ${install_without_asking-} || -n ${CI-} || ! -t 0 ]]; then return 0; fi
  local answer
  read -r -p "Install them now, as root, with apt-get? [y/N] " answer || return
  [[ $answer == [yY] || $answer == yes ]]
}

# Says which of the packages have another version than the one that the tests last passed with.
tell_other_versions() {
  local package tested here others=()
  for package; do
    tested=$(sed --quiet "s/^$package //p" "$tested_packages")
    here=$(dpkg-query --show --showformat '${Version}' "$package")
    [[ $here == "$tested" ]] || others+=("$package $here (tested: $tested)")
  done
  ((${#others[@]} == 0)) || printf 'Other versions than the tested ones: %s\n' "$(printf '%s, ' "${others[@]}")" >&2
}

# Says which of the packages are missing and installs them. Where it may not or cannot, ends the script with status 1.
need_packages() {
  local package missing=()
  for package; do
    is_installed "$package" || missing+=("$package")
  done
  if ((${#missing[@]} > 0)); then
    echo "These Debian packages are missing: ${missing[*]}"
    if ! may_install || ! apt_get_as_root update ||
      ! apt_get_as_root install --yes --no-install-recommends "${missing[@]}"; then
      echo "These Debian packages are needed and were not installed: ${missing[*]}" >&2
      exit 1
    fi
  fi
  tell_other_versions "$@"
}
