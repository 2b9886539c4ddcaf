#!/usr/bin/env bash
# Takes the README's pictures of the workbench on a private X server: the
# sample drawing with its dimensions and the property panel of a selected
# shape, and the same document in the four-view layout (top, front, right
# and perspective). Writes docs/images/workbench-drawing.png and
# docs/images/workbench-four-views.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
images="$root/docs/images"
mkdir -p "$images"
# Without a display the example runs on its own Xvfb.
unset DISPLAY
"$root/scripts/run-example.sh" --sample --select "${WORKBENCH_SELECT:-block}" --frames 60 \
  --screenshot "$images/workbench-drawing.png"
"$root/scripts/run-example.sh" --sample --four-views --frames 60 --screenshot "$images/workbench-four-views.png"
echo "Pictures written to $images"
