#!/usr/bin/env bash
# Installs what is missing, builds the program and its module, turns the labels of the example along its main
# street, and says where the result is. From a bare Debian 12 it takes some minutes, most of them the compiler's.
set -euo pipefail
cd "$(dirname "$0")"

if scripts/packages --check native; then
    tests=()
else # the program alone needs much less than its tests
    scripts/packages demo
    tests=(-DORLINTH_TESTS=OFF -DORLINTH_BENCH=OFF)
fi

echo "Building orlinth and ZEPTOrlinth.arx in build/native"
mkdir -p build
cmake --preset native "${tests[@]}" >build/configure.log 2>&1 ||
    { cat build/configure.log >&2; echo "demo.sh: cmake could not set the build up; its words are above" >&2; exit 1; }
cmake --build --preset native --target orlinth ZEPTOrlinth ||
    { echo "demo.sh: the build failed; the compiler's words are above" >&2; exit 1; }

mkdir -p build/demo
result=build/demo/streets-turned.dxf
picture=build/demo/streets-turned.svg
echo
echo "\$ orlinth align examples/streets.dxf --line handle=2F --flip --verify -o $result --picture $picture"
build/native/bin/orlinth align examples/streets.dxf --line handle=2F --flip --verify -o "$result" --picture "$picture"
echo
echo "The drawing as it was:  $PWD/examples/streets.dxf"
echo "with its labels turned: $PWD/$result"
echo "a picture of it:        $PWD/$picture (any browser shows it)"
echo "The program:            $PWD/build/native/bin/orlinth (--help tells more)"
