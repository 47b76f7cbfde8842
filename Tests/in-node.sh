#!/usr/bin/env bash
# Runs node with the npm modules that package-lock.json names, which go to FOLDER.
# Usage: in-node.sh FOLDER ARGUMENT...
set -euo pipefail
sources=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$1"
folder=$(realpath "$1")
# Several tests may come here at once.
exec 9>"$folder/lock"
flock 9
if ! cmp -s "$sources/package-lock.json" "$folder/node_modules/installed-by"; then
  cp "$sources"/package*.json "$folder"
  npm --prefix "$folder" ci --ignore-scripts --no-audit --no-fund --no-update-notifier \
    --loglevel=error >&2
  cp "$folder/package-lock.json" "$folder/node_modules/installed-by"
fi
exec 9>&-

export TEST_MODULES="$folder/node_modules"
exec timeout --kill-after=10 "${TIME_LIMIT:-280}" node "${@:2}"
