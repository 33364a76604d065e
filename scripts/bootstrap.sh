#!/usr/bin/env bash
# Installs the Debian packages the build needs; as non-root, names what is missing.
set -euo pipefail
need=(cmake g++ make libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev)
missing=()
for p in "${need[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
if [ "$(id -u)" -eq 0 ]; then
    echo "bootstrap: installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq "${missing[@]}" >/dev/null
else
    echo "bootstrap: missing packages: ${missing[*]}" >&2
    echo "bootstrap: run as root: apt-get install ${missing[*]}" >&2
    exit 1
fi
