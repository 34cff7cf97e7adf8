#!/usr/bin/env bash
# A short run of the client-side suites under Valgrind memcheck: any memory error
# or definite leak fails it.  scripts/valgrind.sh [build folder]   (default build/test)
set -euo pipefail
cd "$(dirname "$0")/.."
bin=${1:-build/test}/bin
for suite in test_api test_transport test_records test_reliability; do
  [ -x "$bin/$suite" ] || continue
  echo "== memcheck $suite"
  valgrind --error-exitcode=9 --leak-check=full --errors-for-leak-kinds=definite -q \
    "$bin/$suite" --gtest_brief=1 --gtest_filter=-Strangers.*:Slots.MessagesFromAnotherUserAreDropped
done
