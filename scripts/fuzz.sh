#!/usr/bin/env bash
# Runs the fuzz targets built in build-fuzz/ (see fuzz/CMakeLists.txt):
#   scripts/fuzz.sh [seconds per target] [target names...]
# Inputs found are kept in build-fuzz/corpus/<target>/, the committed seeds
# in fuzz/corpus/<target>/ are only read; each target's output goes to
# build-fuzz/logs/<target>.log. A crash, hang, leak or sanitizer report stops
# the run: the input that caused it is saved as
# build-fuzz/artifacts/<target>-crash-... (or -timeout-, -leak-) and the
# script exits 1.
set -eo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
qv_sanitizer_env
seconds=${1:-30}
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for program in build-fuzz/fuzz_*; do
    [ -f "$program" ] && [ -x "$program" ] && targets+=("${program##*/fuzz_}")
  done
fi
mkdir -p build-fuzz/artifacts build-fuzz/logs
for name in "${targets[@]}"; do
  mkdir -p "build-fuzz/corpus/$name"
  log="build-fuzz/logs/$name.log"
  if ! LD_PRELOAD="$QV_PRELOAD_GL" "build-fuzz/fuzz_$name" -max_total_time="$seconds" -max_len=65536 -timeout=10 \
    -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="build-fuzz/artifacts/$name-" \
    "build-fuzz/corpus/$name" "fuzz/corpus/$name" >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "fuzz_$name: FAILED (log: $log)"
    exit 1
  fi
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo '?')
  echo "fuzz_$name: $runs runs in $seconds s, nothing found"
done
