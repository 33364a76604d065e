#!/usr/bin/env bash
# Runs every benchmark executable of the build tree.
set -euo pipefail
build=${1:-build}
for b in "$build"/bench/bench_*; do
    [ -x "$b" ] || continue
    echo "== $(basename "$b")"
    "$b" --benchmark_counters_tabular=true
done
