#!/bin/sh
# pictures.sh PANEL-SIMULATOR [--update]: compares the LCD with the pictures beside this script, or replaces them.
set -eu
cd -- "$(dirname -- "$0")"
if [ "${2-}" = --update ]; then
    look='wait-lcd-still 600\nlcd \1'
else
    look='expect-lcd \1 24 0.2'
fi
sed -E "s/^(push|escape|turn .*|tap .*)\$/&\nwait-lcd-still 200/; s/^expect-lcd (.*)/$look/" pictures.script |
    "$1" --script -
