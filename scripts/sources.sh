#!/usr/bin/env bash
# Prints every C and C++ file of the project, folders of builds and of npm left out.
set -euo pipefail
cd "$(dirname "$0")/.."
find . \( -name .git -o -name 'build*' -o -name out -o -name node_modules \) -prune -o \
  -type f \( -name '*.h' -o -name '*.c' -o -name '*.cpp' \) -print | LC_ALL=C sort
