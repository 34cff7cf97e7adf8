#!/bin/sh
# Lines of test sources against lines of everything else (C++ and Python sources,
# build folders left out), and their ratio.
set -eu
cd "$(dirname "$0")/.."

count() {
  # Reads file names on stdin, prints their total number of lines.
  tr '\n' '\0' | xargs -0 cat -- 2>/dev/null | wc -l
}

sources=$(git ls-files -co --exclude-standard -- '*.cpp' '*.h' '*.hpp' '*.py' | grep -v '^build/')
tests=$(printf '%s\n' "$sources" | grep -E '^(tests/|bindings/python/tests/)' | count)
rest=$(printf '%s\n' "$sources" | grep -vE '^(tests/|bindings/python/tests/)' | count)
echo "tests: $tests lines"
echo "rest:  $rest lines"
awk -v t="$tests" -v r="$rest" 'BEGIN { printf "ratio: %.2f\n", t / r }'
