#!/usr/bin/env bash
# Tells every relative link and picture in the pages that leads to no file.
set -euo pipefail
cd "$(dirname "$0")/.."

status=0
for page in README.md CONTRIBUTING.md docs/*.md; do
  # Outside of fenced examples: what stands in the brackets after ], up to a # or a title.
  while IFS= read -r target; do
    [ -e "$(dirname "$page")/$target" ] && continue
    echo "$page: nothing is at $target" >&2
    status=1
  done < <(awk '/^ *```/ {inside = !inside; next} !inside' "$page" | grep -oE '\]\([^)# ]+' | cut -c 3- |
    grep -vE '^[a-z]+:' | LC_ALL=C sort -u)
done
exit $status
