#!/usr/bin/env bash
# The main job: the pwc command on the bundled demo project.
set -euo pipefail
build=${1:-build}
root="$(cd "$(dirname "$0")/.." && pwd)"
export PWC_DATA_DIR="${PWC_DATA_DIR:-$root/data/devices}"
exec "$build/src/host/pwc" calc "$root/data/projects/demo.pcf"
