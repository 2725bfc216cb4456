#!/usr/bin/env bash
# run-fuzzers.sh <build dir> <seed corpus dir> <seconds per target>
# Runs every ovui_fuzz_* binary of the build dir in turn. New inputs go to
# <build dir>/corpus/<target> (kept between runs), crashes to
# <build dir>/artifacts/. Prints the executions of each target and, for a
# crash, the reproducer and the command that replays it. Fails on any crash.
set -uo pipefail
dir=$1 seeds=$2 seconds=$3

failed=0
printf '%-18s %14s  %s\n' target executions result
for bin in "$dir"/ovui_fuzz_*; do
  [[ -x "$bin" ]] || continue
  name=${bin##*/ovui_fuzz_}
  work="$dir/corpus/$name" artifacts="$dir/artifacts/$name-" log="$dir/$name.log"
  mkdir -p "$work" "$dir/artifacts"
  "$bin" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$artifacts" "$work" "$seeds/$name" >"$log" 2>&1
  rc=$?
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  if [[ $rc -eq 0 ]]; then
    printf '%-18s %14s  ok\n' "$name" "${execs:-?}"
  else
    failed=1
    reproducer=$(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log" | tail -1)
    printf '%-18s %14s  FAILED (exit %d), log %s\n' "$name" "${execs:-?}" "$rc" "$log"
    grep -m3 -E 'ERROR|expectation failed|SUMMARY' "$log" | sed 's/^/    /'
    [[ -n "$reproducer" ]] && echo "    reproducer: $reproducer" &&
      echo "    replay:     $bin $reproducer"
  fi
done
exit $failed
