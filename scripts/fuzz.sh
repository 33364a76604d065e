#!/bin/sh
# fuzz.sh BUILD [SECONDS]: seeds fuzz-corpus/ from the device data and runs
# each loader's fuzzer for SECONDS (default 600).
set -eu
BUILD=${1:?usage: fuzz.sh BUILD [SECONDS]}
DURATION=${2:-600}
ROOT=$(cd "$(dirname "$0")/.." && pwd)
CORPUS=$ROOT/fuzz-corpus
mkdir -p "$CORPUS/text" "$CORPUS/bin"

set --
for f in "$ROOT"/data/devices/* "$ROOT"/data/projects/*; do
    [ -f "$f" ] && set -- "$@" "$f"
done
"$BUILD/fuzz/fuzz_seed" "$CORPUS/text" "$CORPUS/bin" "$@"

status=0
for form in text bin; do
    log=$BUILD/fuzz_${form}_loader.log
    echo "fuzz_${form}_loader: ${DURATION} s"
    if ! "$BUILD/fuzz/fuzz_${form}_loader" -max_len=65536 -max_total_time="$DURATION" \
        -print_final_stats=1 -artifact_prefix="$BUILD/fuzz_${form}_" \
        "$CORPUS/$form" >"$log" 2>&1; then
        echo "fuzz_${form}_loader FAILED, see $log"
        status=1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    echo "fuzz_${form}_loader: ${runs:-?} executions"
done
exit $status
