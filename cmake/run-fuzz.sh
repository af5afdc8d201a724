#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer in BUILD_DIR (default
# build-fuzz) and runs each for FUZZ_SECONDS (default 300). New interesting
# inputs go to BUILD_DIR/fuzz-corpus/<target>/ (the checked-in seeds are read,
# not written); a crash, leak or time-out stops the target and leaves its
# input as BUILD_DIR/fuzz-artifacts/<target>-crash-*: fix the reader, then copy
# the input into fuzz/corpus/<target>/ so that `make test` replays it.
#   FUZZ_SECONDS=60 FUZZ_TARGETS="alarm_stream pictures" make fuzz
set -uo pipefail
cd "$(dirname "$0")/.."
BUILD=${1:-build-fuzz}
SECONDS_EACH=${FUZZ_SECONDS:-300}
TARGETS=${FUZZ_TARGETS:-"xml_documents json_documents alarm_event alarm_stream pictures rtsp_answer"}
JOBS=${JOBS:-$(nproc)}

CC=clang CXX=clang++ cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBT_FUZZ=ON >/dev/null || exit 1
cmake --build "$BUILD" --target $(printf 'fuzz_%s ' $TARGETS) -j "$JOBS" || exit 1

export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1}
export LSAN_OPTIONS=suppressions=$PWD/cmake/lsan.supp
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
status=0
summary=""
for t in $TARGETS; do
  work="$BUILD/fuzz-corpus/$t"
  mkdir -p "$work" "$BUILD/fuzz-artifacts"
  log="$BUILD/fuzz-artifacts/$t.log"
  echo "== fuzz_$t for ${SECONDS_EACH}s (log: $log)"
  "$BUILD/bin/fuzz_$t" "$work" "fuzz/corpus/$t" -max_total_time="$SECONDS_EACH" -timeout=10 -rss_limit_mb=2048 \
    -max_len=65536 -print_final_stats=1 -artifact_prefix="$BUILD/fuzz-artifacts/$t-" >"$log" 2>&1
  rc=$?
  last=$(grep -E '^#[0-9]+' "$log" | tail -1)
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  line="fuzz_$t: exit $rc, $execs runs; last: $last"
  echo "$line"
  summary+="$line"$'\n'
  if [ $rc -ne 0 ]; then
    status=1
    grep -E 'ERROR|SUMMARY|Test unit written' "$log" | head -5
  fi
done
echo "---"
printf '%s' "$summary"
exit $status
