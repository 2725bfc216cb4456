#!/usr/bin/env bash
# The project's user commands:
#   ./run.sh test    sanitizer build, then every test through ctest
#   ./run.sh demo    builds and runs the form demo (offscreen into build/form_demo.png,
#                    build/form_demo_catalogue.png, ..._settings.png and
#                    ..._settings_dialog.png when there is no display;
#                    --screenshot FILE asks for that anyway)
#   ./run.sh bench   Release build, then every benchmark under bench/
#   ./run.sh fuzz [seconds]   every libFuzzer target under fuzz/, 60 s each by default
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$root"

usage() {
  echo "usage: $0 {test|demo|bench|fuzz [seconds]}" >&2
  exit 2
}

[[ $# -ge 1 ]] || usage
cmd=$1
shift

"$root/scripts/install-deps.sh" "$cmd"

jobs=$(nproc 2>/dev/null || echo 2)
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)

# configure_and_build <dir> <cmake args...>
configure_and_build() {
  local dir=$1
  shift
  if [[ ! -f "$dir/CMakeCache.txt" ]]; then
    cmake -S "$root" -B "$dir" "${generator[@]}" "$@" >/dev/null
  else
    cmake -S "$root" -B "$dir" "$@" >/dev/null
  fi
  cmake --build "$dir" -j "$jobs"
}

case "$cmd" in
  test)
    dir="$root/build/test"
    configure_and_build "$dir" -DCMAKE_BUILD_TYPE=Debug -DOVUI_SANITIZE=ON \
      -DOVUI_BUILD_TESTS=ON -DOVUI_BUILD_EXAMPLES=ON -DOVUI_BUILD_BENCHMARKS=OFF
    export QT_QPA_PLATFORM=offscreen
    export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:strict_string_checks=1"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
    export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
    set +e
    ctest --test-dir "$dir" --output-on-failure -j "$jobs" "$@"
    exit $?
    ;;
  demo)
    dir="$root/build/demo"
    configure_and_build "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
      -DOVUI_BUILD_TESTS=OFF -DOVUI_BUILD_EXAMPLES=ON -DOVUI_BUILD_BENCHMARKS=OFF
    exec "$dir/examples/form_demo/ovui_form_demo" "$@"
    ;;
  bench)
    dir="$root/build/bench"
    configure_and_build "$dir" -DCMAKE_BUILD_TYPE=Release \
      -DOVUI_BUILD_TESTS=OFF -DOVUI_BUILD_EXAMPLES=OFF -DOVUI_BUILD_BENCHMARKS=ON
    found=0
    for b in "$dir"/bench/ovui_bench; do
      [[ -x "$b" ]] || continue
      found=1
      "$b" "$@"
    done
    [[ $found -eq 1 ]] || echo "bench: no benchmarks built yet"
    ;;
  fuzz)
    seconds=${1:-60}
    [[ "$seconds" =~ ^[0-9]+$ ]] || usage
    dir="$root/build/fuzz"
    # A project of its own: it is built with clang, the library with g++.
    [[ -f "$dir/CMakeCache.txt" ]] ||
      cmake -S "$root/fuzz" -B "$dir" "${generator[@]}" -DCMAKE_CXX_COMPILER=clang++ >/dev/null
    cmake --build "$dir" -j "$jobs"
    exec "$root/scripts/run-fuzzers.sh" "$dir" "$root/fuzz/corpus" "$seconds"
    ;;
  *) usage ;;
esac
