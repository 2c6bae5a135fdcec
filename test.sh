#!/usr/bin/env bash
# Installs what is missing, builds and runs the tests.
#
#   ./test.sh                     the native build (g++), the include check and the format check
#   ./test.sh sanitize            clang with address and undefined-behaviour checks, and short fuzzing
#   ./test.sh windows             mingw-w64, the same tests under Wine
#   ./test.sh lint                clang-tidy over all sources
#   ./test.sh ... --corpus DIR    also opens and saves every drawing of a folder of yours
#
# The last lines are CTest's own. Exit code 0: all passed.
set -euo pipefail
cd "$(dirname "$0")"

build=native
corpus=""
while [ $# -gt 0 ]; do
    case "$1" in
        native | sanitize | windows | lint) build=$1 ;;
        --corpus)
            [ $# -ge 2 ] || { echo "test.sh: --corpus needs a folder of drawings" >&2; exit 2; }
            corpus=$(cd "$2" 2>/dev/null && pwd) || { echo "test.sh: no such folder: $2" >&2; exit 2; }
            shift ;;
        -h | --help) sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
        *) echo "test.sh: unknown argument '$1' (see ./test.sh --help)" >&2; exit 2 ;;
    esac
    shift
done

if [ "$build" = lint ]; then exec scripts/lint; fi

scripts/packages "$build"
scripts/check_includes.py
[ "$build" != native ] || scripts/format --check

cmake --preset "$build" -DORLINTH_CORPUS="$corpus" >build-configure.log 2>&1 ||
    { cat build-configure.log >&2; exit 1; }
rm -f build-configure.log
cmake --build --preset "$build"

display=""
if [ "$build" = windows ]; then
    display="xvfb-run -a -s '-screen 0 1024x768x24'"
    eval "$display" scripts/wine-run wineboot -i >/dev/null 2>&1 || true
fi
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
eval "$display" ctest --preset "$build" -j "$(nproc)"
