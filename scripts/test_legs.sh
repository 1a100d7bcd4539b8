# shellcheck shell=bash
# The legs of ./run-tests. To be sourced, in the project's folder; then: leg_NAME for each NAME of all_legs.
# shellcheck disable=SC2034
all_legs=(plain release tsan asan lint fuzz)

# Tests that take long, look into the library's file, or are about something else than the library.
long_labels='campaign|cli|docs|fuzz-replay|limits|lua|model-test|packaging|platform|python|sim|tools|wireshark|zigbee-classification-test'

jobs=$(nproc)
launcher=-DCMAKE_CXX_COMPILER_LAUNCHER=ccache
# Without a preprocessor's run before each compilation, and with precompiled headers.
export CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime

# build_preset PRESET
build_preset() {
  cmake --preset "$1" "$launcher"
  cmake --build --preset "$1" --parallel "$jobs"
}

# run_ctest PRESET [OPTION...]: most of a test's time is waiting for other programs, so there are more than processors.
run_ctest() {
  ctest --preset "$1" --parallel $((jobs * 4)) "${@:2}"
}

leg_plain() {
  build_preset plain
  run_ctest plain
}

leg_tsan() {
  build_preset tsan
  run_ctest tsan
}

leg_asan() {
  build_preset asan
  run_ctest asan
}

# The test programs of the plain leg load the library that ships instead of their own: nothing is compiled twice.
leg_release() {
  local build=$PWD/build/test-release
  cmake --preset release -B "$build" -DTEMBRA_TESTS=OFF -DTEMBRA_BENCH=ON -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 "$launcher"
  cmake --build "$build" --parallel "$jobs"
  build_preset plain
  LD_LIBRARY_PATH=$build/lib run_ctest plain --label-exclude "$long_labels"
  bench/short_test.sh "$build/bin" "$build/performance"
  rm -rf "$build/installed"
  cmake --install "$build" --prefix "$build/installed" >/dev/null
  tests/packaging/hardening.sh "$build/installed"
  tests/packaging/search_paths.sh "$build" "$build/installed"
  tests/packaging/source_path.sh "$build/installed" "$PWD"
  tests/packaging/strangers.sh build/strangers
  tests/packaging/musl_library.sh build/musl
  tests/packaging/router.sh build/router-check
}

leg_lint() {
  tests/lint/format.sh clang-format
  tests/lint/tidy.sh run-clang-tidy clang++ build/lint
}

# The seed is fixed: a leg fails for what was changed, not by chance.
leg_fuzz() {
  TEMBRA_FUZZ_SEED=1 fuzz/run 5
}
