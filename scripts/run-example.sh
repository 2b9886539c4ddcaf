#!/usr/bin/env bash
# Builds the library and runs the example program: a window with a viewer
# on a small document. Arguments go to the program (--frames N,
# --screenshot picture.png). Without a display it runs on a private Xvfb
# for a few frames and saves a picture instead.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${IMODELSTAGE_BUILD_DIR:-$root/build/release}
"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target viewer
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-xcb}
if [ -n "${DISPLAY:-}" ]; then
  exec "$build/examples/viewer" "$@"
fi

fifo=$(mktemp -u)
mkfifo "$fifo"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$fifo" >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; rm -f "$fifo"' EXIT
read -r -t 30 display <"$fifo" || { echo "run-example.sh: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display"
picture="$build/viewer_example.png"
if [ $# -eq 0 ]; then
  set -- --frames 30 --screenshot "$picture"
fi
"$build/examples/viewer" "$@"
if [ -f "$picture" ]; then
  echo "No display: the example ran on a private X server; its picture is $picture"
fi
