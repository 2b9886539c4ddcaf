#!/usr/bin/env bash
# Builds the library and runs the example program.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${IMODELSTAGE_BUILD_DIR:-$root/build/release}
"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target classtable
"$build/examples/classtable"
