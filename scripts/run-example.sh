#!/usr/bin/env bash
# Builds the library and runs the workbench, the example application: views
# on a small design with the tools to draw, select, transform, dimension,
# save and reopen it. Arguments go to the program (a document to open,
# --sample, --four-views, --frames N, --screenshot picture.png). Without a
# display it runs on a private Xvfb with the sample open and saves a picture.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${IMODELSTAGE_BUILD_DIR:-$root/build/release}
"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DIMODELSTAGE_BUILD_EXAMPLES=ON >/dev/null
cmake --build "$build" --target workbench
program="$build/examples/workbench/workbench"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-xcb}
if [ -n "${DISPLAY:-}" ]; then
  if [ $# -eq 0 ]; then
    set -- --sample
  fi
  exec "$program" "$@"
fi

fifo=$(mktemp -u)
mkfifo "$fifo"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$fifo" >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; rm -f "$fifo"' EXIT
read -r -t 30 display <"$fifo" || { echo "run-example.sh: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display"
picture="$build/workbench_example.png"
if [ $# -eq 0 ]; then
  set -- --sample --frames 60 --screenshot "$picture"
fi
"$program" "$@"
if [ -f "$picture" ]; then
  echo "No display: the workbench ran on a private X server; its picture is $picture"
fi
