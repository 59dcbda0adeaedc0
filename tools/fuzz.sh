#!/usr/bin/env bash
# Builds the libFuzzer harnesses of fuzz/ with clang and runs each target
# for a while, two at a time, then prints one line per target:
#   <target>  executions <n>  edges <n>  faults <n>
# Exits non-zero when any target found a fault: a crash, a sanitizer
# report, a leak, an input slower than ZV_FUZZ_SLOW seconds (default 1) or
# one that hangs or takes more than 2 GB. Each fault's input is kept in
# <build>/fuzz/faults/<target>/; once fixed, it belongs in
# fuzz/regressions/<target>/, from where ./test.sh replays it.
#
#   tools/fuzz.sh [seconds-per-target] [target...]    (60 s, all targets)
#
# The corpus grows in <build>/fuzz/corpus/<target>/ from run to run; the
# seeds made by fuzz/make_seeds.cpp and, when ../shared/testdata is there,
# its pictures are read as seeds too. The build is <repo>/build-fuzz, or
# $ZV_FUZZ_BUILD. Run it niced on a shared machine: nice -n 19 tools/fuzz.sh
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
. "$here/tools/deps.sh"
# Debian 12's clang is 14; libFuzzer and the sanitizers' runtimes come apart.
zv_ensure_packages $ZV_BUILD_PACKAGES clang libclang-rt-14-dev

seconds=${1:-60}
[ $# -gt 0 ] && shift
case "$seconds" in ''|*[!0-9]*) echo "fuzz.sh: seconds must be a number, not '$seconds'" >&2; exit 2 ;; esac
slow=${ZV_FUZZ_SLOW:-1}
# The harnesses hand each input to the readers as a file: on a tmpfs that
# costs a tenth of what it costs on a disk.
if [ -z "${TMPDIR:-}" ] && [ -d /dev/shm ] && [ -w /dev/shm ]; then export TMPDIR=/dev/shm; fi
build=${ZV_FUZZ_BUILD:-$here/build-fuzz}
testdata=$here/../shared/testdata

mkdir -p "$build"
CC=clang CXX=clang++ cmake -S "$here" -B "$build" -DZV_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  >"$build/configure.log" 2>&1 || { cat "$build/configure.log" >&2; exit 1; }
cmake --build "$build" --target fuzz_all -j2 >"$build/build.log" 2>&1 ||
  { tail -n 50 "$build/build.log" >&2; exit 1; }

fuzz=$build/fuzz
# Seeds drawn from the testdata pictures for the targets that don't read
# whole files: the first APP1 of each JPEG, for the Exif reader.
extra=$fuzz/testdata-seeds
rm -rf "$extra"
if [ -d "$testdata" ]; then
  "$fuzz/zv_fuzz_seeds" "$extra" "$testdata" >/dev/null
fi

# The table CMake wrote: target, dictionary, longest input, testdata folders.
targets=()
declare -A dict max_len folders
while read -r name d len rest; do
  case "$name" in '#'*|'') continue ;; esac
  if [ $# -gt 0 ]; then
    wanted=0
    for t in "$@"; do [ "$t" = "$name" ] && wanted=1; done
    [ $wanted -eq 1 ] || continue
  fi
  targets+=("$name"); dict[$name]=$d; max_len[$name]=$len; folders[$name]=$rest
done <"$fuzz/targets.txt"
[ ${#targets[@]} -gt 0 ] || { echo "fuzz.sh: no such target: $*" >&2; exit 2; }

run_target() {
  local t=$1
  local corpus=$fuzz/corpus/$t faults=$fuzz/faults/$t
  mkdir -p "$corpus" "$faults"
  local args=(-max_total_time="$seconds" -max_len="${max_len[$t]}" -timeout=10 -rss_limit_mb=2048
              -report_slow_units="$slow" -close_fd_mask=3 -print_final_stats=1
              -artifact_prefix="$faults/")
  [ "${dict[$t]}" != "-" ] && args+=(-dict="${dict[$t]}")
  local dirs=("$corpus" "$fuzz/seeds/$t")
  [ -d "$extra/$t" ] && dirs+=("$extra/$t")
  local f
  # libFuzzer reads a seed folder with all the folders below it.
  for f in ${folders[$t]}; do [ -d "$testdata/$f" ] && dirs+=("$testdata/$f"); done
  "$fuzz/fuzz_$t" "${args[@]}" "${dirs[@]}" >"$fuzz/$t.log" 2>&1 || true
}

# Two jobs, one on each core.
running=0
for t in "${targets[@]}"; do
  if [ $running -ge 2 ]; then wait -n || true; running=$((running - 1)); fi
  run_target "$t" &
  running=$((running + 1))
done
wait

# A slow unit may be one the machine was busy during: each is run again on
# its own, and only one that is slow again is kept as a fault.
recheck_slow() {
  local t=$1 unit ms
  for unit in "$fuzz/faults/$t"/slow-unit-*; do
    [ -f "$unit" ] || continue
    ms=$("$fuzz/fuzz_$t" -close_fd_mask=3 "$unit" 2>&1 | sed -n 's/^Executed .* in \([0-9]*\) ms$/\1/p' | tail -n 1)
    if [ -n "$ms" ] && [ "$ms" -lt $((slow * 1000)) ]; then
      echo "fuzz.sh: $t: $(basename "$unit") takes $ms ms on its own; not kept" >>"$fuzz/$t.log"
      rm -f "$unit"
    fi
  done
}

failed=0
for t in "${targets[@]}"; do
  recheck_slow "$t"
  log=$fuzz/$t.log
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  edges=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 | cut -d' ' -f2)
  faults=$(find "$fuzz/faults/$t" -type f | wc -l)
  # A run that ended without its statistics stopped on a fault.
  if [ -z "$runs" ] && [ "$faults" -eq 0 ]; then faults=1; fi
  printf '%-12s executions %9s  edges %5s  faults %s\n' "$t" "${runs:-?}" "${edges:-?}" "$faults"
  if [ "$faults" -ne 0 ]; then
    failed=1
    find "$fuzz/faults/$t" -type f | sed 's/^/    /'
  fi
done
exit $failed
