#!/bin/sh
# Runs a Windows program under Wine for CTest and the build. The program's output goes
# through a file, not straight to the caller: Wine starts helper processes (its desktop
# process, explorer.exe) on demand, and those inherit the output of whichever program
# started them and outlive it, so a caller reading a pipe would wait for them.
out=$(mktemp "${TMPDIR:-/tmp}/kpcb-wine.XXXXXX") || exit 125
wine "$@" >"$out" 2>&1 </dev/null
status=$?
cat "$out"
rm -f "$out"
exit $status
