#!/usr/bin/env bash
# compare-outputs.sh [BASE]: dumps every result and the calculation log of a
# set of scenarios (bench/pwc_dump.cpp) from the revision BASE (default: the
# tag speed-base) and from the working tree, and compares them file by file.
# Exits 1 when any scenario differs.
set -euo pipefail
base=${1:-speed-base}
source "$(dirname "$0")/base-tree.sh"

echo "building pwc_dump on $base ($(git -C "$root" rev-parse --short "$base^{commit}"))"
base_build "$base" pwc_dump
echo "building pwc_dump on the working tree"
cmake_bench "$root" "$root/build-compare" pwc_dump

"$base_bin/pwc_dump" "$base_tmp/out-base"
"$root/build-compare/pwc_dump" "$base_tmp/out-new"

status=0
for name in $("$root/build-compare/pwc_dump" --list); do
    old=$base_tmp/out-base/$name.txt new=$base_tmp/out-new/$name.txt
    if [ -f "$old" ] && cmp -s "$old" "$new"; then
        echo "$name: identical"
        continue
    fi
    status=1
    if [ ! -f "$old" ]; then
        echo "$name: differs (no dump from $base)"
        continue
    fi
    # cmp: "a b differ: byte N, line L" (or "EOF on a after ..." when one is a prefix).
    line=$(cmp "$old" "$new" 2>&1 | sed -n 's/.*line \([0-9]*\).*/\1/p' || true)
    line=${line:-1}
    echo "$name: differs from line $line"
    diff <(tail -n +"$line" "$old" | head -n 200) <(tail -n +"$line" "$new" | head -n 200) |
        head -n 12 | sed 's/^/    /' || true
done
exit $status
