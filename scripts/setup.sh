#!/usr/bin/env bash
# Installs what building the project and running the demo need on a fresh Debian
# machine. Safe to run again: packages already present are not fetched twice. The
# test command adds its own tools with scripts/setup-test.sh.
set -euo pipefail
source "$(dirname "$0")/lib/apt-install.sh"
apt_install build-essential cmake g++ pkg-config python3 \
  libcli11-dev libarchive-dev libpolyclipping-dev libxml2-dev
