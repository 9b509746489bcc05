#!/usr/bin/env bash
# Whole-process timing of the OBJ export on the benchmark mesh (1000000 vertices and
# 1000000 quads), run as a user runs it: `neqbridge obj BASE SUBDIVIDED OUT.obj`, timed
# from outside the process with hyperfine when it is installed, otherwise with the
# shell's `time`. For comparison it also times `cat OUT.obj > copy.obj`, a process that
# only writes the same bytes.
#
# usage: bench/run_obj_timing.sh [RUNS]        (default 5 runs)
# environment: BUILD_DIR=dir  use an existing build there instead of the bench preset
#              JOBS=n         parallel build jobs (default: all cores)
set -euo pipefail
cd "$(dirname "$0")/.."
runs="${1:-5}"

if [ -n "${BUILD_DIR:-}" ]; then
    build="$BUILD_DIR"
else
    scripts/deps
    cmake --preset bench >/dev/null
    build=build/bench
fi
log="$(mktemp /tmp/neqbridge-timing-build-XXXXXX)"
if ! cmake --build "$build" -j "${JOBS:-$(nproc)}" --target neqbridge_cli neqbridge_bench >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    exit 1
fi
rm -f "$log"
tool="$build/neqbridge"
bench="$build/bench/neqbridge_bench"

work="$(mktemp -d /tmp/neqbridge-timing-XXXXXX)"
trap 'rm -rf "$work"' EXIT
echo "writing the benchmark mesh files into $work"
"$bench" --write-mesh-files "$work"
export_cmd="$tool obj $work/base_faces.NeQ $work/subdivided.NeQ $work/out.obj"
floor_cmd="cat $work/out.obj > $work/copy.obj"
$export_cmd >/dev/null # warms the page cache and makes the file the floor copies
bytes=$(wc -c <"$work/out.obj" | tr -d ' ')
echo "OBJ text: $bytes bytes"

if command -v hyperfine >/dev/null; then
    hyperfine --warmup 1 --runs "$runs" -n "neqbridge obj" "$export_cmd >/dev/null" \
        -n "cat (floor)" "$floor_cmd"
    exit 0
fi

# Best of RUNS wall-clock times, and MB/s of OBJ text at that time.
time_best() {
    local label="$1" command="$2" best="" line
    local TIMEFORMAT='%R %U %S'
    for _ in $(seq "$runs"); do
        line=$({ time bash -c "$command" >/dev/null; } 2>&1)
        read -r real user sys <<<"$line"
        if [ -z "$best" ] || awk -v a="$real" -v b="$best" 'BEGIN { exit !(a < b) }'; then
            best="$real"
            best_line="$line"
        fi
    done
    read -r real user sys <<<"$best_line"
    awk -v l="$label" -v r="$real" -v u="$user" -v s="$sys" -v n="$bytes" -v k="$runs" 'BEGIN {
        printf "%-14s best of %d: %.3f s wall (%.3f s user, %.3f s system), %.0f MB/s\n",
               l, k, r, u, s, (r > 0 ? n / r / 1e6 : 0) }'
}
time_best "neqbridge obj" "$export_cmd"
time_best "cat (floor)" "$floor_cmd"
