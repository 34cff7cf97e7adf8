#!/bin/sh
# Runs a Windows program under Wine for CTest and the build. The program's output goes
# through a file, not straight to the caller: Wine starts helper processes (its desktop
# process, explorer.exe) on demand, and those inherit the output of whichever program
# started them and outlive it, so a caller reading a pipe would wait for them.
# A run that failed without printing anything never reached the program (every test
# program prints as it starts): Wine itself did not start it, now and then, on a busy
# machine. Such a run is made once more.
out=$(mktemp "${TMPDIR:-/tmp}/kpcb-wine.XXXXXX") || exit 125
wine "$@" >"$out" 2>&1 </dev/null
status=$?
if [ "$status" -ne 0 ] && [ ! -s "$out" ]; then
  echo "wine-run: $1 ended with $status before printing anything: run again" >&2
  wine "$@" >"$out" 2>&1 </dev/null
  status=$?
fi
cat "$out"
rm -f "$out"
exit $status
