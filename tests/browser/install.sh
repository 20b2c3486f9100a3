#!/bin/sh
# install.sh FOLDER: puts what the browser tests are written with into the folder, unless it is there already.
set -eu
here=$(cd -- "$(dirname -- "$0")" && pwd -P)
mkdir -p "$1"
cd -- "$1"
if [ -d node_modules ] && cmp -s "$here/package-lock.json" package-lock.json; then
    exit 0
fi
rm -rf node_modules
cp "$here/package.json" "$here/package-lock.json" .
if ! npm ci --ignore-scripts --no-audit --no-fund; then
    rm -f package-lock.json # the next call tries again
    echo "The browser tests need the npm packages of tests/browser/package.json, and npm could not fetch them." >&2
    exit 1
fi
