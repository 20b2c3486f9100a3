#!/bin/sh
# packages.sh FOLDER: builds the packages, and installs, tries, upgrades and purges them in a clean Debian 12 inside the
# folder; the service is tried by service.sh. Takes root, debhelper, debootstrap and lintian, and about ten minutes.
# The folder may be kept: a second call uses its system.
set -eu
here=$(cd -- "$(dirname -- "$0")" && pwd -P)
root=$(cd -- "$here/../.." && pwd -P)
mkdir -p "$1"
folder=$(cd -- "$1" && pwd -P)
system=$folder/system
say() { printf '%s\n' "== $*"; }
fail() { say "FAILED: $*"; exit 1; }
inside() { chroot "$system" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }

say "Building"
rm -rf "$folder/tree" "$folder/newer" "$folder"/matrix-*.*
mkdir "$folder/tree"
(cd "$root" && git archive HEAD) | tar -x -C "$folder/tree"
(cd "$folder/tree" && dpkg-buildpackage --build=binary --unsigned-changes) >"$folder/build.log" 2>&1 \
    || fail "see $folder/build.log"
lintian --fail-on error "$folder"/*.changes || fail "lintian"
# What the upgrade brings: the same, by another version.
version=$(dpkg-deb --field "$(echo "$folder"/matrix-front-panel_*.deb)" Version)
mkdir "$folder/newer"
for package in matrix-front-panel matrix-panel-simulator; do
    dpkg-deb --raw-extract "$folder/${package}_"*.deb "$folder/newer/$package"
    sed -i "s/$version/$version+newer/" "$folder/newer/$package/DEBIAN/control"
    dpkg-deb --root-owner-group --build "$folder/newer/$package" "$folder/newer/$package.deb" >>"$folder/build.log"
done

say "A clean system"
if [ ! -e "$system/usr/bin/dpkg" ]; then
    mirror=$(sed -n 's/^deb \(\[[^]]*\] \)\{0,1\}\([^ ]*\) bookworm main.*/\2/p; s/^URIs: *\([^ ]*debian\/\{0,1\}\) *$/\1/p' \
        /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null | head -n 1)
    debootstrap --variant=minbase bookworm "$system" ${mirror:+"$mirror"} >"$folder/debootstrap.log" || fail "see $folder/debootstrap.log"
fi
simulator=
trap 'exit 1' HUP INT TERM
trap 'kill $simulator 2>/dev/null || true; umount -l "$system/dev/pts" "$system/dev" "$system/proc"' EXIT
mount -t proc proc "$system/proc"
mount --bind /dev "$system/dev"
mount --bind /dev/pts "$system/dev/pts"
inside sh -c 'dpkg --purge matrix-panel-simulator matrix-front-panel; userdel matrix-front-panel' >/dev/null 2>&1 || true

say "Installing"
rm -f "$system"/tmp/matrix-*.deb
cp "$folder"/matrix-front-panel_*.deb "$folder"/matrix-panel-simulator_*.deb "$system/tmp/"
inside sh -c 'apt-get -q update && apt-get -q -y --no-install-recommends install /tmp/matrix-front-panel_*.deb /tmp/matrix-panel-simulator_*.deb' >"$folder/install.log" 2>&1 \
    || fail "see $folder/install.log"
inside getent passwd matrix-front-panel >/dev/null || fail "the user is not there"
inside systemd-analyze security --offline=true --threshold=20 /lib/systemd/system/matrix-front-panel.service \
    >"$folder/security.log" || fail "see $folder/security.log"

say "The installed simulator plays its demo with the installed program"
"$root/tests/support/own-network" chroot "$system" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/root LANG=C.UTF-8 \
    panel-simulator --demo || fail "the demo"

say "An upgrade while it runs"
mkfifo "$folder/console" 2>/dev/null || true
"$root/tests/support/own-network" chroot "$system" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/root LANG=C.UTF-8 \
    panel-simulator --no-open --http-port 0 <"$folder/console" >"$folder/simulator.log" 2>&1 &
simulator=$!
exec 3>"$folder/console"
printf 'wait-ready\nget /SYS/CECU/LCD.AutoTake\n' >&3
until grep -q 'LCD.AutoTake=' "$folder/simulator.log"; do # it is up
    kill -0 "$simulator" || fail "see $folder/simulator.log"
    sleep 0.1
done
cp "$folder"/newer/*.deb "$system/srv/"
inside sh -c 'dpkg --install /srv/matrix-*.deb' >"$folder/upgrade.log" 2>&1 || fail "see $folder/upgrade.log"
printf 'tap source 2\nexpect led source 2 1\nquit\n' >&3
exec 3>&-
if ! wait "$simulator" || grep 'error:' "$folder/simulator.log"; then
    fail "see $folder/simulator.log"
fi
simulator=

"$here/service.sh" "$system" /srv/matrix-front-panel.deb /srv/matrix-panel-simulator.deb || fail "the service"

# The user stays, as Debian's system users do: its number, which the journal has, is not to become somebody else's.
say "Purging"
rm "$system"/tmp/matrix-*.deb "$system"/srv/matrix-*.deb
inside dpkg --purge matrix-panel-simulator matrix-front-panel >"$folder/purge.log" 2>&1 || fail "see $folder/purge.log"
inside find / -xdev \( -name '*matrix-*' -o -name '*front-panel*' -o -name '*panel-simulator*' -o -user matrix-front-panel \) \
    >"$folder/left"
[ ! -s "$folder/left" ] || fail "left behind: $(cat "$folder/left")"
say "All well"
