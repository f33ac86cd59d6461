#!/bin/sh
# Installs the build tree into a scratch prefix, then builds and runs a
# consumer against the shared and the static library, from C and from C++,
# through the CMake package and through pkg-config (static: fully static
# executables), and checks the installed tool and its manual page.
set -eu
build=$1
source_dir=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix
cmake --install "$build" --prefix "$prefix" > /dev/null
export LD_LIBRARY_PATH="$prefix/lib:$prefix/lib64:${LD_LIBRARY_PATH:-}"

run() {  # run LABEL COMMAND [ARGS...]: the command must succeed
    label=$1
    shift
    if ! "$@" > "$scratch/out" 2>&1; then
        echo "FAIL: $label" >&2
        cat "$scratch/out" >&2
        exit 1
    fi
}

for language in C CXX; do
    dir=$scratch/consumer_$language
    cmake -S "$source_dir" -B "$dir" -DCONSUMER_LANGUAGE=$language -DCMAKE_PREFIX_PATH="$prefix" > /dev/null
    cmake --build "$dir" > /dev/null
    run "CMake package, $language, shared" "$dir/consumer"
    run "CMake package, $language, static" "$dir/consumer_static"
done

if command -v pkg-config > /dev/null; then
    export PKG_CONFIG_PATH
    PKG_CONFIG_PATH=$(ls -d "$prefix"/lib*/pkgconfig | head -n 1)
    shared=$(pkg-config --cflags --libs ox)
    static=$(pkg-config --cflags --libs --static ox)
    cp "$source_dir/consumer.c" "$scratch/consumer.c"
    cp "$source_dir/consumer.c" "$scratch/consumer.cpp"
    for pair in cc:consumer.c c++:consumer.cpp; do
        compiler=${pair%%:*}
        source=$scratch/${pair#*:}
        # shellcheck disable=SC2086  # the flags are separate words
        $compiler "$source" -o "$scratch/pc_shared" $shared
        run "pkg-config, $compiler, shared" "$scratch/pc_shared"
        # shellcheck disable=SC2086
        $compiler "$source" -o "$scratch/pc_static" $static -static
        run "pkg-config, $compiler, static" "$scratch/pc_static"
    done
fi

test -x "$prefix/bin/ox" || { echo "FAIL: the tool is not installed" >&2; exit 1; }
run "installed tool" "$prefix/bin/ox" --version
grep -q "Tessaline" "$scratch/out" || { echo "FAIL: ox --version" >&2; exit 1; }
manual=$prefix/share/man/man1/ox.1
test -f "$manual" || { echo "FAIL: no manual page at $manual" >&2; exit 1; }
if command -v man > /dev/null; then
    MANWIDTH=80 man -l "$manual" 2> /dev/null | grep -q "EXIT STATUS" || { echo "FAIL: ox.1 does not render" >&2; exit 1; }
fi
echo "install: every consumer built and ran"
