#!/usr/bin/env bash
# Installs what is missing, builds the viewer with its tests and runs the
# whole suite: once in a plain build, once under AddressSanitizer and
# UndefinedBehaviorSanitizer. Exits non-zero on any failure.
#
#   ./test.sh                 both builds
#   ./test.sh --no-sanitize   the plain build only
#   ./test.sh -R <regex>      only the tests whose names match
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/tools/deps.sh"
zv_ensure_packages $ZV_BUILD_PACKAGES $ZV_TEST_PACKAGES

sanitize=1
ctest_args=()
while [ $# -gt 0 ]; do
  case "$1" in
    --no-sanitize) sanitize=0 ;;
    -R) ctest_args+=(-R "$2"); shift ;;
    *) echo "test.sh: unknown argument $1" >&2; exit 2 ;;
  esac
  shift
done

# GL and GUI tests need an X server: start our own when there is none.
xvfb_pid=""
cleanup() { [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null || true; }
trap cleanup EXIT
if [ -z "${DISPLAY:-}" ]; then
  fifo=$(mktemp -u); mkfifo "$fifo"
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$fifo" >/dev/null 2>&1 &
  xvfb_pid=$!
  read -r display_number <"$fifo"
  rm -f "$fifo"
  export DISPLAY=":$display_number"
fi
echo "test.sh: X display $DISPLAY"

jobs=$(nproc)
build_and_test() {
  local dir="$1"; shift
  echo "test.sh: building $dir"
  mkdir -p "$here/$dir"
  cmake -S "$here" -B "$here/$dir" -DZV_BUILD_TESTS=ON -DZV_WERROR=ON "$@" >"$here/$dir/configure.log" 2>&1 ||
    { cat "$here/$dir/configure.log" >&2; return 1; }
  cmake --build "$here/$dir" -j"$jobs"
  (cd "$here/$dir" && ctest --output-on-failure -j"$jobs" ${ctest_args[@]+"${ctest_args[@]}"})
}

# The benchmarks are built too, so that they keep compiling; they run by hand.
build_and_test build -DCMAKE_BUILD_TYPE=Release -DZV_BUILD_BENCH=ON
if [ $sanitize -eq 1 ]; then
  # Leaks inside the GL driver and X libraries are theirs, not ours.
  export LSAN_OPTIONS="suppressions=$here/tests/lsan.supp:print_suppressions=0"
  export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
  build_and_test build-asan -DCMAKE_BUILD_TYPE=Debug -DZV_SANITIZE=ON
fi
echo "test.sh: all tests passed"
