#!/bin/sh
# gallery.sh BUILD-FOLDER: walks the menu and makes the pictures of docs/gallery.md anew.
set -eu
here=$(cd -- "$(dirname -- "$0")" && pwd -P)
root=$(cd -- "$here/.." && pwd -P)
gallery=$(cd -- "$1" && pwd -P)/gallery/gallery
rm -f "$root"/docs/gallery/*.png
QT_QPA_PLATFORM=offscreen exec "$root/tests/support/own-network" "$gallery" --output "$root/docs/gallery"
