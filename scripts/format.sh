#!/usr/bin/env bash
# Lays out the sources as .clang-format says; with --check only tells where they differ.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(-i)
[ "${1:-}" != --check ] || mode=(--dry-run -Werror)
bash scripts/sources.sh | xargs clang-format "${mode[@]}"
