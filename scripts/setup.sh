#!/usr/bin/env bash
# Installs what the project needs on a fresh Debian machine. Safe to run again:
# packages already present are not fetched twice.
set -euo pipefail

packages=(
  build-essential cmake g++ clang libclang-rt-14-dev
  libgtest-dev googletest libgmock-dev libbenchmark-dev
  libpolyclipping-dev libzmq3-dev pkg-config
  python3 valgrind
  libcli11-dev libxml2-dev
  g++-mingw-w64-x86-64 binutils-mingw-w64-x86-64 wine wine64
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if ((${#missing[@]})); then
  echo "setup: installing ${missing[*]}"
  sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  "${sudo_cmd[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}"
fi

# The Windows cross build compiles the Clipper library from Debian's sources.
"$(dirname "$0")/setup-clipper-source.sh"
