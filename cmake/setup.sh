# shellcheck shell=sh disable=SC2034,SC2154 # the lists are used, and root is set, by the sourcing script
# What `run` and `test` share: the Debian 12 packages and the way to a built tree. Sourced, with root set to
# the top of the tree. Everything told to the person goes to stderr; stdout belongs to the program.

packages_build="g++ cmake ninja-build pkg-config qt6-base-dev qt6-httpserver-dev qt6-websockets-dev
    libumockdev-dev umockdev zlib1g-dev libsystemd-dev libtcmalloc-minimal4
    fonts-roboto-unhinted fonts-font-awesome python3-fonttools"
packages_test="iproute2 chromium"
# For the page's tests. A Node.js from elsewhere brings its own npm, and does not go with Debian's.
command -v npm >/dev/null || packages_test="$packages_test nodejs npm"
packages_lint="clang-format cppcheck shellcheck"
packages_tidy="clang clang-tidy clazy"
# The benchmarks (-DHOUSE_BENCHMARKS=ON) want libbenchmark-dev and libhiredis-dev, the fuzzers (fuzz/fuzz.sh) clang and
# libclang-rt-dev, soak --speed libfaketime, the cross build what tests/packaging/armhf.sh lists; nothing here installs
# them.

# What a call ends with when packages are missing and cannot be installed; panel-simulator means the same by it.
exit_packages_missing=4

# Qt 6 complains in a locale that is not UTF-8, and a bare system has none at all.
: "${LANG:=C.UTF-8}"
export LANG

say() { printf '%s\n' "== $*" >&2; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# find_missing PACKAGE[:ARCHITECTURE]...: leaves those that are not installed in $missing.
find_missing() {
    # shellcheck disable=SC2016 # the fields are dpkg-query's
    present=$(dpkg-query --show --showformat \
        '${Package}=${db:Status-Status}\n${Package}:${Architecture}=${db:Status-Status}\n' "$@" 2>/dev/null || true)
    missing=
    for package; do
        printf '%s\n' "$present" | grep -qxF "$package=installed" || missing="$missing $package"
    done
    missing=${missing# }
}

# need PACKAGE...: installs those that are missing and leaves their names in $missing. Asks neither apt nor
# the network when none is.
need() {
    if ! command -v dpkg-query >/dev/null; then
        say "This script installs what it needs on Debian 12, and this is no Debian. Needed:" "$@"
        exit "$exit_packages_missing"
    fi
    find_missing "$@"
    [ -n "$missing" ] || return 0

    if [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; then
        say "Installing $missing"
        # shellcheck disable=SC2016,SC2086 # expanded there; a list of words
        as_root sh -c 'apt-get -q update
            DEBIAN_FRONTEND=noninteractive exec apt-get -q -y --no-install-recommends install "$@"' sh $missing >&2 \
            && return 0
        say "The installation failed. Still missing: $missing"
    else
        say "Packages are missing, and installing them takes root or sudo: $missing"
    fi
    say "As root, run this, then call again:"
    printf '%s\n' "apt-get update && apt-get install --no-install-recommends $missing" >&2
    exit "$exit_packages_missing"
}

# Two calls in one tree take turns; the lock ends with unlock, before the program or the tests start.
lock() {
    mkdir -p "$root/build"
    exec 9>"$root/build/lock"
    flock --nonblock 9 && return 0
    say "Waiting for another build in this tree"
    flock 9
}

unlock() { exec 9>&-; }

# configure FOLDER CMAKE_ARGUMENT...: nothing to do when the folder was configured here with these arguments by
# this user and nothing was installed since. Else it starts fresh, for a cache remembers what was missing, or
# forbidden, then. Changes in the CMake files are Ninja's business.
configure() {
    folder=$1
    shift
    how="$(id -u) $root $*"
    if [ -z "$missing" ] && [ -f "$folder/build.ninja" ] \
        && [ "$(cat "$folder/configured-with" 2>/dev/null)" = "$how" ] \
        && [ -z "$(find "$root/CMakePresets.json" -newer "$folder/configured-with")" ]; then
        return 0
    fi
    say "Configuring ${folder#"$root/"}"
    rm -f "$folder/configured-with"
    cmake --fresh -S "$root" -B "$folder" "$@" >&2
    printf '%s\n' "$how" >"$folder/configured-with"
}

# build FOLDER [TARGET...]: brings the targets, or everything, up to date; silent if they are.
build() {
    folder=$1
    shift
    if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -qF 'no work to do'; then
        say "Building ${folder#"$root/"} (the first time takes some minutes)"
        ninja -C "$folder" "$@" >&2
    fi
}
