#!/usr/bin/env bash
# Installs every Debian package that the build, tests, benchmarks, fuzz
# targets and the example need. Safe to run again: it only calls apt-get
# when something is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qtbase5-dev qtbase5-dev-tools
  libopenscenegraph-dev libopenscenegraph161 libopenthreads-dev openscenegraph
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  xvfb xauth libgl1-mesa-dri libglu1-mesa-dev libxcb1-dev
  fonts-dejavu-core
  clang libclang-rt-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
