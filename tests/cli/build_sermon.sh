#!/usr/bin/env bash
# Builds a whole sermon with the outline editing commands, as a preacher's script would, checks
# what `show` prints and exports the result to Word and Markdown.
# Usage: build_sermon.sh QUILLON_BINARY
set -euo pipefail
quillon=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data"
mkdir -p "$XDG_CONFIG_HOME/Quillon"
echo '{"Quillon.sampleSermonsHidden": true}' >"$XDG_CONFIG_HOME/Quillon/preferences.json"

q() { "$quillon" --library "$work/library" "$@" </dev/null; }
fail() {
    echo "build_sermon: $*" >&2
    exit 1
}

id=$(q new --title "The Father Who Runs" --speaker "Ann Lee" --template blank)
q topic add "$id" "The far country" >/dev/null
q topic add "$id" "The long road home" >/dev/null
q topic add "$id" "The father's welcome" >/dev/null
q subtopic add "$id" 1 "Wasted substance" >/dev/null
q subtopic add "$id" 2 "Coming to himself" >/dev/null
q subtopic add "$id" 3 "Running to meet him" >/dev/null
q subtopic add "$id" 3 "The robe and the ring" >/dev/null
q scripture add "$id" 1.1 "luke 15 11-16" >/dev/null
q scripture add "$id" 2.1 "Luke 15:17-19" >/dev/null
q scripture add "$id" 3.1 "Luke 15:20" --version ASV >/dev/null
q scripture add "$id" 3.2 "luke 15 22-24" >/dev/null
q scripture add "$id" 3.1 "Isaiah 55:7" >/dev/null
q details "$id" 3 --text "Grace moves first." >/dev/null
q details "$id" 3.1 --text "He saw him a great way off." >/dev/null
printf 'The younger son asked for his share.\nThe father never stopped watching the road.\n' | "$quillon" --library "$work/library" notes "$id" --file - >/dev/null
q set "$id" --series "Lost and Found" --venue "Main Hall" --date 2025-03-16 --tags grace,home --colour "#1f6fb2" >/dev/null

# A mistake, removed again: without --yes nothing is deleted.
q topic add "$id" "Aside" >/dev/null
if q topic delete "$id" 4 >/dev/null 2>&1; then fail "deleted without --yes"; fi
q topic delete "$id" 4 --yes >/dev/null
q scripture move "$id" 3.1.2 --to 1 >/dev/null

show=$(q show "$id")
for expected in "1. The far country" "   3.2 The robe and the ring" "       3.1.1 Isaiah 55:7 (KJV)" \
    "       3.1.2 Luke 15:20 (ASV)" "       1.1.1 Luke 15:11-16 (KJV)" "Series:    Lost and Found"; do
    grep -qxF -- "$expected" <<<"$show" || fail "show lacks “$expected”:
$show"
done
grep -qF "Aside" <<<"$show" && fail "the deleted topic is still there"

q export "$id" --format docx -o "$work/sermon.docx" >/dev/null
q export "$id" --format md -o "$work/sermon.md" >/dev/null
[ -s "$work/sermon.docx" ] || fail "no Word export"
grep -qF "The father's welcome" "$work/sermon.md" || fail "the Markdown export lacks a topic"
grep -qF "Luke 15:20" "$work/sermon.md" || fail "the Markdown export lacks a scripture"
echo "built and exported $id"
