#!/usr/bin/env bash
# Installs what is missing, builds everything, and runs every test: the full
# suite in a normal build (GL suites under a private Xvfb), then the suites
# that need no GL again under AddressSanitizer and UndefinedBehaviorSanitizer.
# Exits non-zero on any failure.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${IMODELSTAGE_BUILD_DIR:-$root/build/release}
sanitized=${IMODELSTAGE_SANITIZE_DIR:-$root/build/sanitize}
jobs=$(nproc)

"$root/scripts/install-deps.sh"

xvfb_pid=
cleanup() {
  if [ -n "$xvfb_pid" ]; then kill "$xvfb_pid" 2>/dev/null || true; fi
}
trap cleanup EXIT

start_xvfb() {
  local fifo
  fifo=$(mktemp -u)
  mkfifo "$fifo"
  # -noreset: the server must not reset, and refuse new clients meanwhile,
  # each time the last test program lets go of it.
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$fifo" >/dev/null 2>&1 &
  xvfb_pid=$!
  local display
  read -r -t 30 display <"$fifo" || { echo "test.sh: Xvfb did not start" >&2; rm -f "$fifo"; return 1; }
  rm -f "$fifo"
  export DISPLAY=":$display"
}

summary() {
  grep -E 'tests passed|tests failed' "$1" | tail -n 1
}

# A compiler cache, where the machine has one, makes a rebuild from a clean
# tree cheap; without one nothing changes.
launcher=()
if command -v ccache >/dev/null 2>&1; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

echo "== build ($build)"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DIMODELSTAGE_WERROR=ON "${launcher[@]}" >/dev/null
cmake --build "$build" -j "$jobs"

echo "== tests"
start_xvfb
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-xcb}
status=0
# One test at a time: the GL suites share the display's one pointer, and a
# suite that moves it must not move it under another.
(cd "$build" && ctest --output-on-failure --no-tests=error -j 1) 2>&1 | tee "$build/ctest.log" || status=1

echo "== sanitized build ($sanitized)"
# The GL suites do not run here, so their programs are not built.
cmake -S "$root" -B "$sanitized" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DIMODELSTAGE_SANITIZE=ON \
  -DIMODELSTAGE_WERROR=ON -DIMODELSTAGE_BUILD_BENCHMARKS=OFF -DIMODELSTAGE_BUILD_EXAMPLES=ON \
  -DIMODELSTAGE_BUILD_GL_TESTS=OFF "${launcher[@]}" >/dev/null
cmake --build "$sanitized" -j "$jobs"

echo "== sanitized tests (no GL)"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
(cd "$sanitized" && ctest --output-on-failure --no-tests=error -j "$jobs" -LE '^(gl|package)$') 2>&1 | tee "$sanitized/ctest.log" || status=1

echo "== summary"
echo "release:   $(summary "$build/ctest.log")"
echo "sanitized: $(summary "$sanitized/ctest.log")"
exit $status
