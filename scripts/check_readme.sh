#!/usr/bin/env bash
# Compiles and runs the C++ and C examples of the README against the library in build-release.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the first fenced block of a language.
example() {
  awk -v fence="\`\`\`$1" '$0 == fence {inside = 1; next} inside && /^```/ {exit} inside' README.md
}

link=(-Iinclude -Lbuild-release "-Wl,-rpath,$PWD/build-release" -lVLVKMakeupEngine)
example cpp >"$work/example.cpp"
example c >"$work/example.c"
g++ -std=c++20 -Wall -Wextra -Werror "$work/example.cpp" -o "$work/example_cpp" "${link[@]}"
gcc -std=c99 -Wall -Wextra -Werror "$work/example.c" -o "$work/example_c" "${link[@]}"
"$work/example_cpp"
"$work/example_c"
