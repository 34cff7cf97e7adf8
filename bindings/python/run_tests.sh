#!/usr/bin/env bash
# Runs the Python binding's tests against a build: run_tests.sh <build>/bin [unittest options]
# The folder must hold the KPCBAPI library and the reference viewer KorbinPCB.
set -euo pipefail
if [ $# -lt 1 ] || [ ! -d "$1" ]; then
  echo "usage: $0 <build bin folder, e.g. build/test/bin>" >&2
  exit 2
fi
bin=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
export KPCB_LIBRARY="$bin"
cd "$here/tests"
# A query that is never answered would wait for ever: bound the whole run.
exec timeout 900 python3 -m unittest discover -s . -p 'test_*.py' "${@:2}"
