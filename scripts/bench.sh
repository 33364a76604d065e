#!/usr/bin/env bash
# bench.sh [BUILD]: runs every benchmark of the build tree, then bench_rss.
# With BASE=<rev> set, also builds this tree's benchmarks against BASE's
# sources (scripts/base-tree.sh), runs the engine and evaluator benchmarks of
# BASE and then of the working tree, and prints them side by side.
# BENCH_FLAGS: extra flags for the benchmarks (--benchmark_filter=...,
# --benchmark_min_time=...). RSS_ROWS: the rows of bench_rss (50000).
set -euo pipefail
build=${1:-build}
flags=(${BENCH_FLAGS:-})
rss_rows=${RSS_ROWS:-50000}

rss() {  # rss BIN_DIR: one process per design
    for design in logic mixed; do "$1/bench_rss" "$rss_rows" "$design"; done
}

if [ -z "${BASE:-}" ]; then
    for b in "$build"/bench/bench_*; do
        [ -x "$b" ] && [ "$(basename "$b")" != bench_rss ] || continue
        echo "== $(basename "$b")"
        "$b" --benchmark_counters_tabular=true "${flags[@]}"
    done
    echo "== bench_rss"
    rss "$build/bench"
    exit 0
fi

source "$(dirname "$0")/base-tree.sh"
targets=(bench_engine bench_lator bench_rss pwc_cli)
echo "building the benchmarks on $BASE"
base_build "$BASE" "${targets[@]}"
echo "building the benchmarks on the working tree"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DPWC_BUILD_BENCH=ON "${launcher[@]}" \
    >/dev/null
cmake --build "$build" -j "$jobs" --target "${targets[@]}" >/dev/null

out=$base_tmp/results
mkdir -p "$out"
for side in old new; do
    bin=$base_bin
    [ $side = new ] && bin=$build/bench
    for b in bench_engine bench_lator; do
        echo "== $side $b"
        "$bin/$b" --benchmark_out="$out/$side-$b.json" --benchmark_out_format=json "${flags[@]}"
    done
done

# One line a benchmark: name, time, unit. The JSON output holds one field a
# line. Real time for the benchmarks that measure it (a process), CPU time for
# the others; failed ones are left out.
times() {
    cat "$out/$1"-bench_*.json | awk -F': ' '
        { sub(/^ */, ""); sub(/,$/, ""); gsub(/"/, "") }
        $1 == "name" { name = $2; failed = 0 }
        $1 == "error_occurred" && $2 == "true" { failed = 1 }
        $1 == "real_time" { real = $2 }
        $1 == "cpu_time" { cpu = $2 }
        $1 == "time_unit" && !failed { print name, (name ~ /real_time$/ ? real : cpu), $2 }'
}
echo
echo "== $BASE (old) against the working tree (new)"
awk 'NR == FNR { old[$1] = $2; next }
     BEGIN { printf "%-42s %14s %14s %7s\n", "benchmark", "old", "new", "new/old" }
     { o = ($1 in old) ? sprintf("%.3f %s", old[$1], $3) : "-"
       r = ($1 in old && old[$1] > 0) ? sprintf("%.3f", $2 / old[$1]) : "-"
       printf "%-42s %14s %14s %7s\n", $1, o, sprintf("%.3f %s", $2, $3), r
       n = $1; sub(/\/[0-9]+$/, "", n); rows = substr($1, length(n) + 2)
       if (rows != "" && rows + 0 > 0) { per[n] = per[n] sprintf(" %s:%.3f", rows, $2 / rows) } }
     END { print "\nnew time per row (cost linear in rows when these agree):"
           for (n in per) printf "  %s%s\n", n, per[n] }' <(times old) <(times new)

echo
echo "== bench_rss, $rss_rows rows: $BASE (old), then the working tree (new)"
rss "$base_bin"
rss "$build/bench"
