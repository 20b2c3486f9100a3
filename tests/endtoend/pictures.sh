#!/bin/sh
# pictures.sh PANEL-SIMULATOR [--update]: compares the LCD with the pictures beside this script, or replaces them.
set -eu
cd -- "$(dirname -- "$0")"
if [ "${2-}" != --update ]; then
    exec "$1" --script pictures.script
fi
sed 's/^expect-lcd \([^ ]*\).*/wait-lcd-still 600\nlcd \1/' pictures.script | "$1" --script -
