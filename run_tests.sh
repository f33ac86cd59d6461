#!/bin/sh
# Builds the library and runs the whole test suite twice: an optimised build,
# then a build with AddressSanitizer (and LeakSanitizer) and
# UndefinedBehaviorSanitizer; then builds the concurrency test alone with
# ThreadSanitizer and runs it (any report fails it).
set -eu
cd "$(dirname "$0")"
jobs=$(nproc 2>/dev/null || echo 2)

cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs"

cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=Debug -DOX_SANITIZE=ON -DOX_BUILD_BENCH=OFF
cmake --build build-sanitize -j "$jobs"
ctest --test-dir build-sanitize --output-on-failure -j "$jobs"

cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DOX_SANITIZE_THREAD=ON -DOX_BUILD_BENCH=OFF
cmake --build build-tsan -j "$jobs" --target ox_concurrency_test
TSAN_OPTIONS="halt_on_error=1 exitcode=66" build-tsan/tests/ox_concurrency_test
