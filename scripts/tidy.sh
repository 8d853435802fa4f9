#!/usr/bin/env bash
# Lints sources with clang-tidy, as the release build compiles them: the named files, or all but tests and benchmarks, which would
# take three quarters of the time.
#
#   cmake --preset release && bash scripts/tidy.sh [FILE...]
set -euo pipefail
cd "$(dirname "$0")/.."

# Files that this build does not compile, those of other processors for example, have no flags to be read with.
compiled_files() {
  sed -n "s|^ *\"file\": \"$PWD/\(.*\)\",\{0,1\}$|\1|p" build-release/compile_commands.json |
    LC_ALL=C sort -u | grep -vE '^(tests|bench)/'
}

files=("$@")
[ $# -gt 0 ] || mapfile -t files < <(compiled_files)
# Its count of hidden warnings, on standard error, is not worth reading.
printf '%s\0' "${files[@]}" | xargs -0 -n 2 -P "$(nproc)" clang-tidy -p build-release --quiet \
  2> >(grep -v 'warnings\{0,1\} generated\.$' >&2)
