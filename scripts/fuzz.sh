#!/usr/bin/env bash
# Runs one libFuzzer target for a while and merges what it found into the
# committed corpus.
#
#   scripts/fuzz.sh <target> [seconds] [extra libFuzzer flags...]
#
# Targets: LoadDocumentFuzzer, ReadSettingsFuzzer. The default is 600
# seconds. The build uses clang with AddressSanitizer and
# UndefinedBehaviorSanitizer in build/fuzz (IMODELSTAGE_FUZZ_BUILD_DIR
# overrides). The fuzzer works on a scratch copy of fuzz/corpus/<target>/;
# afterwards only inputs that add coverage to the committed corpus are
# merged back into it. A crash, leak or hang leaves its input under
# <build>/artifacts/<target>/ and exits non-zero without merging.
set -euo pipefail

usage() {
  echo "usage: $0 <LoadDocumentFuzzer|ReadSettingsFuzzer> [seconds] [libFuzzer flags...]" >&2
  exit 2
}

[ $# -ge 1 ] || usage
target=$1
shift
seconds=600
if [ $# -ge 1 ] && [[ $1 =~ ^[0-9]+$ ]]; then
  seconds=$1
  shift
fi
case "$target" in
  LoadDocumentFuzzer | ReadSettingsFuzzer) ;;
  *) usage ;;
esac

root=$(cd "$(dirname "$0")/.." && pwd)
build=${IMODELSTAGE_FUZZ_BUILD_DIR:-$root/build/fuzz}
corpus=$root/fuzz/corpus/$target
artifacts=$build/artifacts/$target/
jobs=$(nproc)

echo "== configure ($build)"
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DIMODELSTAGE_BUILD_FUZZERS=ON -DIMODELSTAGE_SANITIZE=ON \
  -DIMODELSTAGE_BUILD_TESTS=OFF -DIMODELSTAGE_BUILD_BENCHMARKS=OFF -DIMODELSTAGE_BUILD_EXAMPLES=OFF >/dev/null
echo "== build $target"
cmake --build "$build" -j "$jobs" --target "$target"

work=$(mktemp -d "${TMPDIR:-/tmp}/$target.XXXXXX")
cleanup() { rm -rf "$work"; }
trap cleanup EXIT
scratch=$work/corpus
mkdir -p "$corpus" "$artifacts" "$scratch" "$work/tmp"
cp -- "$corpus"/* "$scratch"/ 2>/dev/null || true
# libFuzzer leaves by _Exit, so the targets' own temporary files go where
# the cleanup finds them.
export TMPDIR=$work/tmp

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:symbolize=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# Documents of many objects need room; a single input that runs for more
# than -timeout seconds counts as a hang.
flags=(-max_len=65536 -rss_limit_mb=2048 -timeout=20 -print_final_stats=1 -artifact_prefix="$artifacts")

echo "== fuzz $target for $seconds s"
status=0
"$build/fuzz/$target" "${flags[@]}" -max_total_time="$seconds" "$@" "$scratch" || status=$?
if [ "$status" -ne 0 ]; then
  echo "fuzz.sh: $target failed (exit $status); inputs in $artifacts" >&2
  exit "$status"
fi

echo "== merge new inputs into $corpus"
before=$(find "$corpus" -type f | wc -l)
# Edges only, without hit-count buckets: keeps the committed corpus small.
"$build/fuzz/$target" "${flags[@]}" -use_counters=0 -merge=1 "$corpus" "$scratch"
after=$(find "$corpus" -type f | wc -l)
echo "fuzz.sh: corpus of $target: $before -> $after files, $(du -sk "$corpus" | cut -f1) KiB"
