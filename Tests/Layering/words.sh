#!/usr/bin/env bash
# Refuses the words on the left of words.txt in every text, also as a part of a name in camel case.
set -euo pipefail
cd "$(dirname "$0")/../.."
list=Tests/Layering/words.txt
words=$(sed '/^#/d; s/=.*//' $list | xargs | tr ' ' '|')
pattern="((?<![A-Za-z])|(?=[A-Z][a-z]))(?i:$words)(?![a-z])"
echo "a NamedDoor" | grep -qP "$pattern" # It can fail,
echo "indoor" | grep -qvP "$pattern"     # and not on every word.
! grep -rnIP --exclude-dir=build --exclude-dir=corpus --exclude-dir='.?*' --exclude="${list##*/}" --exclude="${0##*/}" "$pattern" .
