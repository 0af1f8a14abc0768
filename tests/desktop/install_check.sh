#!/bin/sh
# Installs the desk's component into a scratch prefix and checks what a Linux desktop reads from it:
# the launcher, the icon, the file types of .quillet and .vrnsermons, and the AppStream metadata.
# Usage: install_check.sh BUILD_DIR SCRATCH_DIR. Exits 77 (skipped) when no checking tool exists.
set -eu
build=$1
prefix=$2
rm -rf "$prefix"
cmake --install "$build" --component desktop --prefix "$prefix" >/dev/null
share=$prefix/share
for file in bin/quillon-desktop share/applications/io.veltra.qln.desktop \
    share/icons/hicolor/scalable/apps/io.veltra.qln.svg share/mime/packages/io.veltra.qln.xml \
    share/metainfo/io.veltra.qln.metainfo.xml; do
    [ -e "$prefix/$file" ] || { echo "not installed: $file"; exit 1; }
done
checked=0
if command -v desktop-file-validate >/dev/null; then
    desktop-file-validate "$share/applications/io.veltra.qln.desktop"
    checked=1
fi
if command -v appstreamcli >/dev/null; then
    appstreamcli validate --no-net --pedantic "$share/metainfo/io.veltra.qln.metainfo.xml"
    checked=1
fi
if command -v update-mime-database >/dev/null; then
    # The file types must compile into the shared MIME database and claim their globs.
    update-mime-database "$share/mime"
    grep -q '^[0-9]*:application/x-quillet:\*\.quillet' "$share/mime/globs2"
    grep -q '^[0-9]*:application/x-vrnsermons:\*\.vrnsermons' "$share/mime/globs2"
    checked=1
fi
# The launcher opens the files the file types describe.
grep -q '^MimeType=.*application/x-quillet;.*application/x-vrnsermons;' "$share/applications/io.veltra.qln.desktop"
[ "$checked" = 1 ] || exit 77
echo "installed files pass"
