#!/usr/bin/env bash
# Runs every benchmark program of a build, one after the other, keeping each
# program's output; ends with the summary tables the programs print (the
# blocks that begin with "== ... summary"), so the figures to compare stand last.
# Usage: scripts/run-benchmarks.sh <bench build dir> [benchmark arguments...]
set -euo pipefail
dir="$1"
shift
results="$dir/results"
mkdir -p "$results"
mapfile -t programs < <(find "$dir/bench" -maxdepth 1 -type f -executable -name 'bench_*' | sort)
if [ ${#programs[@]} -eq 0 ]; then
  echo "bench: no benchmark program in $dir/bench" >&2
  exit 1
fi
failed=()
for program in "${programs[@]}"; do
  name="$(basename "$program")"
  echo "== $name"
  # The chart benchmark needs a real display (QtWebEngine); the others run offscreen.
  if [[ "$name" == *_xvfb ]]; then
    runner=(xvfb-run -a -s "-screen 0 1280x1024x24" env QT_QPA_PLATFORM=xcb QTWEBENGINE_DISABLE_SANDBOX=1)
  else
    runner=(env QT_QPA_PLATFORM=offscreen)
  fi
  if ! "${runner[@]}" "$program" "$@" 2>&1 | tee "$results/$name.txt"; then
    failed+=("$name")
  fi
done
echo
echo "==== summaries (${#programs[@]} programs; full outputs in $results)"
for program in "${programs[@]}"; do
  name="$(basename "$program")"
  if grep -q '^== .*summary' "$results/$name.txt"; then
    sed -n '/^== .*summary/,$p' "$results/$name.txt"
  else
    echo "-- $name: no summary table; its timings:"
    grep -E '^(BM_|Benchmark)' "$results/$name.txt" || true
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "bench: failed: ${failed[*]}" >&2
  exit 1
fi
