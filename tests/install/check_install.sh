#!/bin/sh
# Installs the build tree into a scratch prefix, then builds and runs a
# consumer through the CMake package and through pkg-config.
set -eu
build=$1
source_dir=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build" --prefix "$scratch/prefix" > /dev/null
cmake -S "$source_dir" -B "$scratch/consumer" -DCMAKE_PREFIX_PATH="$scratch/prefix" > /dev/null
cmake --build "$scratch/consumer" > /dev/null
LD_LIBRARY_PATH="$scratch/prefix/lib:$scratch/prefix/lib64:${LD_LIBRARY_PATH:-}" "$scratch/consumer/consumer"
if command -v pkg-config > /dev/null; then
    libdir=$(ls -d "$scratch"/prefix/lib*/pkgconfig | head -n 1)
    flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs ox)
    cc "$source_dir/consumer.c" -o "$scratch/consumer_pc" $flags
    LD_LIBRARY_PATH="$scratch/prefix/lib:$scratch/prefix/lib64:${LD_LIBRARY_PATH:-}" "$scratch/consumer_pc"
fi
test -x "$scratch/prefix/bin/ox" && "$scratch/prefix/bin/ox" version
