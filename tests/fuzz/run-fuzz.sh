#!/usr/bin/env bash
# Fuzzes the feed decoder with libFuzzer under AddressSanitizer and UndefinedBehaviorSanitizer.
#
#   tests/fuzz/run-fuzz.sh [seconds] [build-dir]
#
# seconds defaults to 60, build-dir to build-fuzz in the checkout. Configures a clang build with
# AEROLUME_FUZZ=ON, builds FeedDecoderFuzz, and runs it on a scratch copy of tests/fuzz/corpus (so the
# committed seeds stay small) with the key dictionary tests/fuzz/feed.dict. A crash or disagreement
# stops the run and leaves the input as crash-* or similar in build-dir/fuzz-artifacts; once fixed, copy
# it into tests/fuzz/corpus as a regression seed. Extra libFuzzer options can go in FUZZ_OPTIONS, e.g.
# FUZZ_OPTIONS="-jobs=2 -workers=2". Exit status: 0 when the time ran out with nothing found.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
seconds="${1:-60}"
build="${2:-$root/build-fuzz}"

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DAEROLUME_FUZZ=ON -DAEROLUME_BUILD_TESTS=OFF -DAEROLUME_BUILD_BENCH=OFF
cmake --build "$build" --target FeedDecoderFuzz

work="$build/fuzz-corpus"
artifacts="$build/fuzz-artifacts"
mkdir -p "$work" "$artifacts"
cp -n "$here"/corpus/* "$work"/

# Leaks are Qt's one-time allocations (locale data, static tables), not the decoder's.
export ASAN_OPTIONS="detect_leaks=0:abort_on_error=1:${ASAN_OPTIONS:-}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1:${UBSAN_OPTIONS:-}"
# shellcheck disable=SC2086 # FUZZ_OPTIONS is a list of options
exec "$build/tests/fuzz/FeedDecoderFuzz" -max_total_time="$seconds" -max_len=4096 -timeout=10 \
    -dict="$here/feed.dict" -artifact_prefix="$artifacts/" ${FUZZ_OPTIONS:-} "$work"
