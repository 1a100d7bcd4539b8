# shellcheck shell=bash
# The project's C++ files. To be sourced; then: cpp_files PATTERN...
cpp_files() {
  local pattern tests=()
  for pattern; do tests+=(-o -name "$pattern"); done
  find include src depot frontend examples platform sim cli words tests tools bench fuzz -type f \( "${tests[@]:1}" \) | sort
}
