#!/bin/sh
# armhf.sh: builds the program for the target's processor (preset armhf), and runs its unit tests under an
# emulator. Belongs into a Debian 12 of its own, as tests/packaging/packages.sh has one: a foreign architecture and its
# packages are nothing to install beside one's own. Where they are missing it says so and ends with 77, as skipped.
set -eu
root=$(cd -- "$(dirname -- "$0")/../.." && pwd -P)
folder=$root/build/armhf
. "$root/cmake/setup.sh"
fail() { say "FAILED: $*"; exit 1; }

packages="g++-arm-linux-gnueabihf qemu-user-static cmake ninja-build pkg-config qt6-base-dev-tools fonts-roboto-unhinted
    fonts-font-awesome python3-fonttools iproute2 qt6-base-dev:armhf qt6-httpserver-dev:armhf qt6-websockets-dev:armhf
    libumockdev-dev:armhf umockdev:armhf zlib1g-dev:armhf libsystemd-dev:armhf libtcmalloc-minimal4:armhf"
# shellcheck disable=SC2086 # a list of words
find_missing $packages
if [ -n "$missing" ]; then
    say "Skipped. In a Debian 12 of its own, install what is missing:"
    printf '%s\n' "dpkg --add-architecture armhf && apt-get update && apt-get install --no-install-recommends $missing" >&2
    exit 77
fi

lock
configure "$folder" --preset armhf
build "$folder" front-panel fonts tests/hardware/all tests/protocol/all tests/managers/all tests/frontpanel/all tests/app/all
unlock

emulated() { "$root/tests/support/own-network" timeout --kill-after 10 300 qemu-arm-static "$@"; }
export QT_QPA_PLATFORM=offscreen
failed=
for test in "$folder"/tests/*/*test; do
    say "${test##*/}"
    emulated "$test" >"$folder/${test##*/}.log" 2>&1 || failed="$failed ${test##*/}"
    tail -n 2 "$folder/${test##*/}.log"
done
[ -z "$failed" ] || fail "$failed; see $folder"
say "All well"
