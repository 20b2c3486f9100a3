#!/bin/sh
# fuzz.sh BUILD-FOLDER MINUTES [NAME...]: builds these fuzzers, or all, with clang and its sanitizers and runs them, one
# after the other, for so many minutes each. They start from corpus/NAME/ and from what earlier runs in this build
# folder came to. An input that ends one stays in BUILD-FOLDER/findings/NAME/, and the exit code is 1. Mend the fault,
# make the input small (-minimize_crash=1), and keep it in corpus/NAME/. Takes Debian's clang and libclang-rt-dev.
set -eu
here=$(cd -- "$(dirname -- "$0")" && pwd -P)
root=$(cd -- "$here/.." && pwd -P)
if [ -e "$1/configured-with" ]; then
    echo "$1 is a build of run or test; the fuzzers want a folder of their own." >&2
    exit 2
fi
mkdir -p "$1"
build=$(cd -- "$1" && pwd -P)
minutes=$2
shift 2
[ $# -gt 0 ] || set -- receivefuzz statusfuzz identificationfuzz simulatorfuzz

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
    -DHOUSE_FUZZERS=ON -DHOUSE_TCMALLOC=OFF -DCMAKE_CXX_FLAGS="-O1 -fno-omit-frame-pointer \
-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined" >&2
ninja -C "$build" "$@" >&2

export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$root/tests/support/leaks.supp:print_suppressions=0"
result=0
for name; do
    found=$build/findings/$name
    mkdir -p "$build/corpus/$name" "$found"
    printf '== %s\n' "$name for $minutes minutes; findings go to $found" >&2
    "$root/tests/support/own-network" "$build/fuzz/$name" -max_total_time=$((minutes * 60)) -timeout=10 \
        -max_len=1024 -len_control=10 -dict="$here/$name.dict" -artifact_prefix="$found/" -print_final_stats=1 \
        "$build/corpus/$name" "$here/corpus/$name" || result=1
    ls "$found" >&2
done
exit $result
