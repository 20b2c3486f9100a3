#!/bin/sh
# service.sh SYSTEM PACKAGE...: boots the Debian 12 in this folder, with the packages installed, in namespaces of its own,
# and has its service manager run the panel as the unit says: its user, its system-call filter and all else. Only the
# devices are the simulator's. In the end the packages, files in there, are installed over it. Takes root and a kernel
# with cgroup2; about two minutes. packages.sh calls it.
set -eu
system=$(cd -- "$1" && pwd -P)
shift
unit=matrix-front-panel
folder=$(mktemp -d)
say() { printf '%s\n' "== $*"; }
fail() { say "FAILED: $*"; exit 1; }

# All that is mounted and started ends with this one process. The processor's null device stands for the panel's in the
# device manager's records, so that the unit's waiting comes to an end.
# shellcheck disable=SC2016 # expanded there
unshare --mount --pid --fork --kill-child --uts --ipc --net --cgroup --propagation private sh -euc '
    mount --bind "$1" "$1"
    cd "$1"
    mount -t proc proc proc
    mount --bind proc/sys proc/sys
    mount -o remount,bind,ro proc/sys # the settings of the whole machine
    mount -t sysfs sysfs sys
    mount -t cgroup2 cgroup2 sys/fs/cgroup
    mount -t tmpfs tmpfs run
    mount -t tmpfs tmpfs tmp
    mount -t tmpfs tmpfs var/log
    mount -t tmpfs -o mode=755 tmpfs dev
    for device in null zero full random urandom tty; do
        : >dev/$device
        mount --bind /dev/$device dev/$device
    done
    mknod -m 666 dev/other c 1 11
    mkdir dev/pts dev/shm
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620 devpts dev/pts
    mount -t tmpfs tmpfs dev/shm
    ln -s pts/ptmx dev/ptmx
    ln -s /proc/self/fd dev/fd
    mkdir -p run/udev/data run/udev/tags/systemd run/bed
    printf "%s\n" I:1 "E:SYSTEMD_ALIAS=/dev/fb0 /dev/input/event0 /dev/input/event1 /dev/input/event2 /dev/i2c-0" \
        G:systemd Q:systemd V:1 >run/udev/data/c1:3
    : >run/udev/tags/systemd/c1:3
    pivot_root . mnt
    umount -l mnt
    exec env -i container=other PATH=/usr/sbin:/usr/bin:/sbin:/bin \
        /lib/systemd/systemd --show-status=no --unit=basic.target
' sh "$system" >"$folder/boot.log" 2>&1 &
unshare=$!
trap 'exit 1' HUP INT TERM
trap 'kill -KILL "$unshare" 2>/dev/null; rm -rf "$folder"' EXIT
enter() { nsenter --target "$(tr -d ' ' <"/proc/$unshare/task/$unshare/children")" "$@"; }
inside() { enter --all env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 TMPDIR=/run/bed "$@"; }
property() { inside systemctl show --value --property "$1" "$unit"; }
# until_true SECONDS COMMAND...
until_true() {
    end=$(($(date +%s) + $1))
    shift
    until "$@"; do
        [ "$(date +%s)" -lt $end ] || return 1
        sleep 0.05
    done
}
booted() { inside sh -c 'test -d /run/bed && systemctl is-active --quiet basic.target' 2>/dev/null; } # not the host
until_true 300 booted || fail "the system does not boot: $(cat "$folder/boot.log")"

say "It waits for its devices alone"
property After | tr ' ' '\n' | tr -d '"' \
    | grep -vE '^(dev-fb0|dev-input-event[012]|dev-i2c\\+x2d0)\.device$|^system\.slice$|^-\.mount$|^systemd-journald\.socket$' \
    && fail "for these too"

# What the simulator starts in the program's place: the unit, with the simulated devices.
inside sh -c 'cat >/run/as-service' <<'END'
printf 'LD_PRELOAD=%s\nUMOCKDEV_DIR=%s\n' "$LD_PRELOAD" "$UMOCKDEV_DIR" >/run/front.env
unset LD_PRELOAD
chown -R matrix-front-panel "$UMOCKDEV_DIR"
chown matrix-front-panel "$UMOCKDEV_DIR"/dev/input/*
trap 'systemctl stop matrix-front-panel; exit $?' TERM
systemctl start matrix-front-panel &
wait $! || exit 1
sleep infinity &
wait
END
# change NAME LINE...: adds to the unit.
change() {
    inside mkdir -p "/run/systemd/system/$unit.service.d"
    name=$1
    shift
    printf '%s\n' '[Service]' "$@" | inside sh -c "cat >/run/systemd/system/$unit.service.d/$name.conf"
    inside systemctl daemon-reload
}
demo() { inside timeout 120 panel-simulator --demo --wrap "sh /run/as-service" >"$folder/demo.log" 2>&1; }
change devices EnvironmentFile=/run/front.env ReadWritePaths=/run/bed

say "The demo with the program as a service"
demo || fail "$(cat "$folder/demo.log"; inside journalctl --no-pager --unit "$unit")"
[ "$(property Result) $(property ExecMainStatus)" = "success 0" ] || fail "it ended with $(property Result)"

say "Without one of its calls the same demo fails" # the first to miss it is the test bed's part in the program
change filter SystemCallFilter=~connect
! demo || fail "the filter filters nothing"
inside rm "/run/systemd/system/$unit.service.d/filter.conf"
inside systemctl daemon-reload

# Each of these the unit's user may do, and the service may not.
say "What it may not do"
enter --net ip address add 192.0.2.1/32 dev lo
inside sh -c "sed -e '/^Restart/d; /^Watchdog/d; s/^Type=.*/Type=oneshot/; s|^ExecStart=.*|ExecStart=/bin/bash /run/probe|' \
    /lib/systemd/system/$unit.service >/run/systemd/system/probe.service && systemctl daemon-reload"
while IFS='|' read -r what command; do
    printf '%s\n' "$command" | inside sh -c 'cat >/run/probe'
    inside setpriv --reuid "$unit" --regid "$unit" --init-groups bash /run/probe </dev/null >"$folder/probe.log" 2>&1 \
        || fail "$what is refused without the unit: $(cat "$folder/probe.log")"
    ! inside systemctl start probe </dev/null 2>/dev/null || fail "$what is allowed"
    say "  $what"
done <<'END'
a call outside the list|renice -n 1 $$
writable code|perl -e 'exit(syscall(9, 0, 4096, 7, 0x22, -1, 0) == -1)'
another kind of socket|perl -e 'socket(my $s, 40, 1, 0) or exit 1'
another machine|echo >/dev/udp/192.0.2.1/9
another device|echo >/dev/other
files of its own|echo >/var/tmp/probe && rm /var/tmp/probe
a namespace|unshare --user true
END
echo true | inside sh -c 'cat >/run/probe'
inside systemctl start probe || fail "it may do nothing at all"

say "It comes back, always and at once"
inside panel-simulator --no-open --http-port 0 --wrap "sh /run/as-service" </dev/null >"$folder/simulator.log" 2>&1 &
is_active() { [ "$(property ActiveState)" = active ] && [ "$(property MainPID)" != "${before:-}" ]; }
until_true 60 is_active || fail "$(cat "$folder/simulator.log")"
slowest=0
for round in 1 2 3 4 5 6 7 8 9 10 11 12; do # the service manager's usual patience is five in ten seconds
    before=$(property MainPID)
    inside systemctl kill --signal KILL "$unit"
    until_true 30 is_active || fail "not after $round ends: $(inside systemctl status "$unit")"
    pause=$((($(property ExecMainStartTimestampMonotonic) - $(property ActiveExitTimestampMonotonic)) / 1000))
    [ $pause -le $slowest ] || slowest=$pause
done
say "  after $slowest ms at most"
[ "$slowest" -le 1000 ] || fail "too late"

say "One that hangs is killed and started again"
before=$(property MainPID)
inside systemctl kill --signal STOP "$unit"
until_true 30 is_active || fail "it is left hanging"
inside journalctl --no-pager --unit "$unit" | grep -q 'Watchdog timeout' || fail "it came back for another reason"

say "An upgrade puts the new program in its place"
before=$(property MainPID)
inside dpkg --install "$@" >"$folder/upgrade.log" 2>&1 || fail "$(cat "$folder/upgrade.log")"
until_true 30 is_active || fail "it does not run any more"
[ "$(inside readlink "/proc/$(property MainPID)/exe")" = /usr/lib/matrix-front-panel/front-panel ] || fail "the old one runs"
