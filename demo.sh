#!/usr/bin/env bash
# Installs what is missing, builds the program and its module, turns the labels of the example along its main
# street, and says where the result is.
set -euo pipefail
cd "$(dirname "$0")"

scripts/packages native
cmake --preset native >/dev/null
cmake --build --preset native --target orlinth ZEPTOrlinth

mkdir -p build/demo
result=build/demo/streets-turned.dxf
echo
echo "\$ orlinth align examples/streets.dxf --line handle=2F --flip --verify -o $result"
build/native/bin/orlinth align examples/streets.dxf --line handle=2F --flip --verify -o "$result"
echo
echo "The drawing as it was:  $PWD/examples/streets.dxf"
echo "with its labels turned: $PWD/$result"
