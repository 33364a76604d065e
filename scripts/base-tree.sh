# Sourced by compare-outputs.sh and bench.sh: builds targets of bench/ (this
# tree's benchmarks and tools) against the sources of another revision,
# checked out in a temporary git worktree that goes away when the script
# exits, however it exits.
#   base_build REV TARGET...   sets base_src and base_bin
root=$(git -C "$(dirname "${BASH_SOURCE[0]}")" rev-parse --show-toplevel)
base_tmp=$(mktemp -d "${TMPDIR:-/tmp}/pwc-base.XXXXXX")
base_cleanup() {
    git -C "$root" worktree remove --force "$base_tmp/src" 2>/dev/null || true
    rm -rf "$base_tmp"
    git -C "$root" worktree prune
}
trap base_cleanup EXIT
jobs=$(nproc)
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

# cmake_bench SRC BUILD TARGET...: bench/ of this tree against the tree SRC.
cmake_bench() {
    local src=$1 bin=$2
    shift 2
    cmake -S "$root/bench" -B "$bin" -DCMAKE_BUILD_TYPE=Release -DPWC_SOURCE_DIR="$src" \
        "${launcher[@]}" >/dev/null
    cmake --build "$bin" -j "$jobs" --target "$@" >"$bin/build.log" 2>&1 ||
        { tail -n 40 "$bin/build.log" >&2; echo "build of $src failed (log: $bin/build.log)" >&2; return 1; }
}

base_build() {
    local rev=$1
    shift
    base_src=$base_tmp/src
    base_bin=$base_tmp/build
    git -C "$root" rev-parse --verify --quiet "$rev^{commit}" >/dev/null ||
        { echo "no revision '$rev'" >&2; return 1; }
    git -C "$root" worktree add --quiet --detach "$base_src" "$rev"
    # Paths relative to the temporary folder keep ccache's hits across runs.
    CCACHE_BASEDIR=$base_tmp cmake_bench "$base_src" "$base_bin" "$@"
}
