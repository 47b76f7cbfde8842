#!/usr/bin/env bash
# Runs the curl lines of docs/server.md as they stand, against the command in processes of its own.
# Usage: curl-examples.sh PAYLEVENKIT MANUAL
set -euo pipefail

paylevenkit=$1
manual=$(realpath "$2")
folder=$(mktemp -d)
cd "$folder"
mkfifo said
"$paylevenkit" --store store.sqlite serve --ports-file ports.json 2>said &
server=$!
finish() {
  kill "$server" 2>/dev/null && wait "$server" || true
  rm -rf "$folder"
}
trap finish EXIT

# What it says comes after the ports file.
exec 3<said
read -r _ BACKEND <&3
read -r _ PROVIDER <&3
read -r _ CONSOLE <&3
for url in "backend\": \"$BACKEND" "provider\": \"$PROVIDER" "console\": \"$CONSOLE"; do
  grep -q "\"$url\"" ports.json
done

fail() {
  echo "$1" >&2
  exit 1
}

# In the manual, the comment behind a line is the status and the beginning of the answer.
examples=0
status=
in_example=
while IFS= read -r line <&4; do
  case "$line" in
    '```sh') in_example=yes ;;
    '```'*) in_example= ;;
    'curl '*)
      [ -n "$in_example" ] || continue
      command=$line
      status=$(eval "$line -o answer -w '%{http_code}'")
      ;;
    '# '*)
      [ -n "$in_example" ] || continue
      expected=${line#\# }
      found="$status $(head -c 1000 answer 2>/dev/null || true)"
      [[ "$found" == "$expected"* ]] || fail "$command
  expected: $expected
  answered: $found"
      examples=$((examples + 1))
      ;;
    [A-Z]*=* | 'grep '*) [ -z "$in_example" ] || eval "$line" || fail "$line: $(cat answer)" ;;
  esac
done 4<"$manual"
[ "$examples" -ge 60 ] || fail "only $examples examples were found in $manual"

# A service that is shown to end does so cleanly, and takes its ports file along.
kill -TERM "$server"
wait "$server" || fail "the services ended with $?"
[ ! -e ports.json ] || fail "the ports file was left"
echo "$examples examples"
