#!/usr/bin/env bash
# Installs what is missing, builds a Release build and starts the viewer on
# the pictures or directories given, or on the bundled samples without any.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/tools/deps.sh"
zv_ensure_packages $ZV_BUILD_PACKAGES

log="$here/build/build.log"
mkdir -p "$here/build"
if ! { cmake -S "$here" -B "$here/build" -DCMAKE_BUILD_TYPE=Release &&
       cmake --build "$here/build" -j"$(nproc)"; } >"$log" 2>&1; then
  cat "$log" >&2
  echo "run.sh: the build failed (log: $log)" >&2
  exit 1
fi

[ $# -eq 0 ] && set -- "$here/samples"
exec "$here/build/zanoview" "$@"
