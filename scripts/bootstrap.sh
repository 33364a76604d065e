#!/usr/bin/env bash
# Installs the Debian packages the build needs; as non-root, names what is missing.
set -euo pipefail
need=(cmake g++ make libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev)
# Only for tests: the HTML report is loaded in a headless browser, a test
# that skips itself when the browser is missing.
test_need=(chromium)
installed() {
    dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}
missing=()
for p in "${need[@]}"; do installed "$p" || missing+=("$p"); done
test_missing=()
for p in "${test_need[@]}"; do installed "$p" || test_missing+=("$p"); done
[ ${#missing[@]} -eq 0 ] && [ ${#test_missing[@]} -eq 0 ] && exit 0
if [ "$(id -u)" -eq 0 ]; then
    all=("${missing[@]}" "${test_missing[@]}")
    echo "bootstrap: installing ${all[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq "${all[@]}" >/dev/null
    exit 0
fi
if [ ${#test_missing[@]} -gt 0 ]; then
    echo "bootstrap: test-only packages missing (their tests are skipped): ${test_missing[*]}" >&2
fi
if [ ${#missing[@]} -gt 0 ]; then
    echo "bootstrap: missing packages: ${missing[*]}" >&2
    echo "bootstrap: run as root: apt-get install ${missing[*]}" >&2
    exit 1
fi
