#!/usr/bin/env bash
# Runs the tests of the console in Chromium, or a program that uses what they use. Copies of it, of
# them and of the class that runs the server, and the modules that they need, go to FOLDER.
# Usage: in-chromium.sh PAYLEVENKIT FOLDER [PROGRAM.js [ARGUMENT...]]
set -euo pipefail
sources=$(cd "$(dirname "$0")" && pwd)
PAYLEVENKIT=$(realpath "$1")
CHROMIUM=$(command -v chromium) || {
  echo "There is no chromium; scripts/setup test installs it." >&2
  exit 1
}
export PAYLEVENKIT CHROMIUM
mkdir -p "$2"
program=${3:+$(realpath "$3")}
cd "$2"
shift 2

rm -f ./*.js
cp "$sources"/*.js "$sources/../Server/server.js" ${program:+"$program"} .
if ! cmp -s "$sources/package-lock.json" node_modules/installed-by; then
  cp "$sources"/package*.json .
  npm ci --ignore-scripts --no-audit --no-fund --loglevel=error >&2
  cp package-lock.json node_modules/installed-by
fi

[ $# -eq 0 ] || exec node "$(basename "$1")" "${@:2}"
exec timeout --kill-after=10 280 node --test --test-concurrency=2 --test-reporter=spec ./*.test.js
