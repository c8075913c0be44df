#!/usr/bin/env bash
# Installs those packages of the named groups of debian-packages.txt that this machine lacks.
#   packaging/install-packages.sh GROUP...
set -euo pipefail
list=$(dirname "$0")/debian-packages.txt

wanted=$(awk -v groups=" $* " '
    /^\[/ { group = substr($1, 2, length($1) - 2); next }
    /^[a-z0-9]/ && index(groups, " " group " ") { print $1 }' "$list")
installed=$(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' 2>/dev/null | awk '/^ii/ { print $2 }')
missing=$(comm -23 <(sort -u <<<"$wanted") <(sort -u <<<"$installed"))
[ -n "$missing" ] || exit 0

echo "Installing what is missing: $(tr '\n' ' ' <<<"$missing")"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing, and neither root nor sudo is at hand to install them." >&2
        exit 1
    fi
    as_root=(sudo)
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update &&
       "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1 </dev/null; then
    tail -n 20 "$log" >&2
    echo "The packages could not be installed." >&2
    exit 1
fi
