#!/usr/bin/env bash
# Takes the README's pictures of the workbench under a private Xvfb: the
# sample drawing with its dimensions and the property panel, and the same
# document seen in the perspective view. Writes docs/images/*.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${IMODELSTAGE_BUILD_DIR:-$root/build/release}
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DIMODELSTAGE_BUILD_EXAMPLES=ON >/dev/null
cmake --build "$build" --target workbench
program="$build/examples/workbench/workbench"
mkdir -p "$root/docs/images"

fifo=$(mktemp -u)
mkfifo "$fifo"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$fifo" >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; rm -f "$fifo"' EXIT
read -r -t 30 display <"$fifo" || { echo "workbench-screenshots.sh: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display" QT_QPA_PLATFORM=xcb

"$program" --sample --select-all --frames 60 --screenshot "$root/docs/images/workbench-drawing.png"
"$program" --sample --perspective --frames 60 --screenshot "$root/docs/images/workbench-perspective.png"
echo "Pictures written to $root/docs/images"
