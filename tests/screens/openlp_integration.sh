#!/usr/bin/env bash
# Starts the real OpenLP (Debian's `openlp`) under Xvfb with its remote API on loopback, its login
# on and a King James Bible made from Quillon's own text, then announces a passage through
# `quillon mesh serve --openlp` and checks that OpenLP's live slide is that passage.
# Exits 77 (skipped) when OpenLP or Xvfb is not installed. Everything started here is stopped
# and removed on exit.
# Usage: openlp_integration.sh QUILLON_BINARY SOURCE_DIR
set -u
quillon=$1
source_dir=$2
for tool in openlp xvfb-run python3 curl; do
    command -v "$tool" >/dev/null 2>&1 || { echo "skipped: $tool is not installed"; exit 77; }
done

work=$(mktemp -d)
openlp_pid=""
cleanup() {
    [ -n "$openlp_pid" ] && kill -- -"$openlp_pid" 2>/dev/null
    sleep 0.5
    [ -n "$openlp_pid" ] && kill -9 -- -"$openlp_pid" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
set -e

port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
data="$work/portable/Data"
mkdir -p "$data/bibles"

# OpenLP's settings: first run done, API on loopback with a login, nothing fetched from the Internet.
cat >"$data/OpenLP.ini" <<INI
[General]
settings%2Fversion=2

[core]
has%20run%20wizard=true
application%20version=$(python3 -c 'from openlp.core.version import get_version; print(get_version()["version"])' 2>/dev/null || echo 3.0.2)
update%20check=false

[api]
ip%20address=127.0.0.1
port=$port
websocket%20port=$((port + 1))
authentication%20enabled=true
user%20id=worship
password=s3cret
update%20check=false
thumbnails=false

[bibles]
status=1
primary%20bible=King James Version
INI

# A Bible in OpenLP's own format, from the text Quillon ships.
python3 - "$source_dir/resources/bibles/KJV.txt" "$data/bibles/King James Version.sqlite" <<'PY'
import sqlite3, sys
source, target = sys.argv[1], sys.argv[2]
db = sqlite3.connect(target)
db.executescript("""
CREATE TABLE metadata (key VARCHAR(255) PRIMARY KEY, value VARCHAR(255));
CREATE TABLE book (id INTEGER PRIMARY KEY, book_reference_id INTEGER, testament_reference_id INTEGER, name VARCHAR(50));
CREATE TABLE verse (id INTEGER PRIMARY KEY, book_id INTEGER REFERENCES book(id), chapter INTEGER, verse INTEGER, text TEXT);
""")
db.executemany("INSERT INTO metadata VALUES (?, ?)",
               [("name", "King James Version"), ("version", "2"), ("book_name_language", "None"),
                ("copyright", "Public domain"), ("permissions", "")])
books, verses = {}, []
with open(source, encoding="utf-8") as lines:
    for line in lines:
        key, _, text = line.rstrip("\n").partition("|")
        abbreviation, _, place = key.rpartition(" ")
        if abbreviation not in books:
            books[abbreviation] = len(books) + 1
        chapter, _, verse = place.partition(":")
        verses.append((books[abbreviation], int(chapter), int(verse), text))
names = ["Genesis", "Exodus", "Leviticus", "Numbers", "Deuteronomy", "Joshua", "Judges", "Ruth", "1 Samuel",
         "2 Samuel", "1 Kings", "2 Kings", "1 Chronicles", "2 Chronicles", "Ezra", "Nehemiah", "Esther", "Job",
         "Psalms", "Proverbs", "Ecclesiastes", "Song of Solomon", "Isaiah", "Jeremiah", "Lamentations", "Ezekiel",
         "Daniel", "Hosea", "Joel", "Amos", "Obadiah", "Jonah", "Micah", "Nahum", "Habakkuk", "Zephaniah", "Haggai",
         "Zechariah", "Malachi", "Matthew", "Mark", "Luke", "John", "Acts", "Romans", "1 Corinthians",
         "2 Corinthians", "Galatians", "Ephesians", "Philippians", "Colossians", "1 Thessalonians",
         "2 Thessalonians", "1 Timothy", "2 Timothy", "Titus", "Philemon", "Hebrews", "James", "1 Peter", "2 Peter",
         "1 John", "2 John", "3 John", "Jude", "Revelation"]
db.executemany("INSERT INTO book VALUES (?, ?, ?, ?)",
               [(i, i, 1 if i <= 39 else 2, names[i - 1]) for i in range(1, 67)])
db.executemany("INSERT INTO verse (book_id, chapter, verse, text) VALUES (?, ?, ?, ?)", verses)
db.commit()
PY

# OpenLP draws its display with QtWebEngine, whose sandbox refuses to start as root.
[ "$(id -u)" -eq 0 ] && export QTWEBENGINE_DISABLE_SANDBOX=1
# Xvfb has no GPU; software rendering keeps the display from waiting on one.
export QTWEBENGINE_CHROMIUM_FLAGS="--disable-gpu" LIBGL_ALWAYS_SOFTWARE=1
setsid xvfb-run -a openlp --portable --portable-path "$work/portable" --no-error-form >"$work/openlp.log" 2>&1 &
openlp_pid=$!

api="http://127.0.0.1:$port/api/v2"
set +e
for _ in $(seq 120); do
    curl --max-time 10 -sf "$api/core/system" >/dev/null && break
    sleep 0.5
done
if ! curl --max-time 10 -sf "$api/core/system" >/dev/null; then
    echo "OpenLP's API did not answer on port $port"; tail -40 "$work/openlp.log"; exit 1
fi
# The Bible list fills once the plugin has loaded.
for _ in $(seq 60); do
    curl --max-time 10 -sf "$api/plugins/bibles/search-options" | grep -q "King James Version" && break
    sleep 0.5
done

export XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_STATE_HOME="$work/state"
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_STATE_HOME"
echo "s3cret" | "$quillon" mesh openlp-login --user worship || exit 1
{
    echo "announce John 3:16 KJV"
    for _ in $(seq 40); do
        sleep 0.25
        echo "status"
    done
    echo "quit"
} | "$quillon" mesh serve --no-discovery --openlp --openlp-address "127.0.0.1:$port" >"$work/serve.out" 2>&1

# The live slide's text is only reachable through OpenLP's renderer, which has no display to draw
# on here; the live controller's state (its WebSocket) names the item gone live instead, and the
# search with the desk's token shows that item's text is the verse.
live_item=$(/usr/bin/python3 - "$((port + 1))" <<'PY'
import asyncio, json, sys
import websockets
async def state():
    async with websockets.connect(f"ws://127.0.0.1:{sys.argv[1]}") as socket:
        return json.loads(await asyncio.wait_for(socket.recv(), 10))["results"]["item"]
print(asyncio.run(state()))
PY
)
token=$(curl --max-time 10 -s -X POST -H 'Content-Type: application/json' \
    -d '{"username":"worship","password":"s3cret"}' "$api/core/login" | sed -n 's/.*"token": *"\([^"]*\)".*/\1/p')
found=$(curl --max-time 10 -s -H "Authorization: $token" "$api/plugins/bibles/search?text=John%203%3A16")
if [ -n "$live_item" ] && echo "$found" | grep -q "For God so loved the world" &&
    grep -q "OpenLP showing John 3:16 from King James Version" "$work/serve.out"; then
    echo "OpenLP took John 3:16 live (item $live_item)"
    exit 0
fi
echo "OpenLP did not take John 3:16 live: item \"$live_item\", search $found"
echo "--- desk"; tail -3 "$work/serve.out"; echo "--- OpenLP"; tail -40 "$work/openlp.log"
exit 1
