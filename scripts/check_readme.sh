#!/usr/bin/env bash
# Compiles and runs the examples of README.md and docs/kernels.md against the library in build-release, and compiles those
# of docs/handle.md, each by itself.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Writes the fenced blocks of a language to files: $work/NAME_1.LANGUAGE and so on. There must be one.
examples() {
  local page=$1 language=$2 name=$3
  awk -v fence="\`\`\`$language" -v out="$work/$name" -v end=".$language" '
    /^```/ {inside = $0 == fence && !inside; if (inside) ++count; next}
    inside {print > (out "_" count end)}' "$page"
  [ -e "$work/${name}_1.$language" ]
}

examples README.md cpp readme
examples README.md c readme
examples docs/kernels.md c kernels
examples docs/handle.md c handle
examples docs/handle.md cpp handle

warnings=(-Wall -Wextra -Werror)
link=(-Iinclude -Lbuild-release "-Wl,-rpath,$PWD/build-release" -lVLVKMakeupEngine)
g++ -std=c++20 "${warnings[@]}" "$work/readme_1.cpp" -o "$work/readme_cpp" "${link[@]}"
gcc -std=c99 "${warnings[@]}" "$work/readme_1.c" -o "$work/readme_c" "${link[@]}"
gcc -std=c99 "${warnings[@]}" "$work/kernels_1.c" -o "$work/kernels_c" "${link[@]}"
"$work/readme_cpp"
"$work/readme_c"
"$work/kernels_c"

for example in "$work"/handle_*.c; do
  gcc -std=gnu99 "${warnings[@]}" -Iinclude -fsyntax-only "$example"
done
if flags=$(pkg-config --cflags opencv4 2>/dev/null); then
  # shellcheck disable=SC2086  # several words
  g++ -std=c++20 "${warnings[@]}" -Iinclude ${flags//-I/-isystem } -fsyntax-only "$work"/handle_*.cpp
fi
