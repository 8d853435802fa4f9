#!/usr/bin/env bash
# Estimates the cycles that the hottest row loops take for a pixel on 64-bit ARM cores: two small ones that do not
# reorder instructions, a later one of them, and a large one that does.
#
#   bash scripts/arm_cycles.sh
#
# The row loops are cross-built; a model of each core (llvm-mca) then runs through the longest loop without branches of
# each: what does nearly all of a row. All loads hit the first-level cache. `cycles` counts stalls; `least` is what the
# core's units take if none of them ever waits. scripts/arm_instructions.sh counts what whole rows and frames take.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "$0")/.."
. scripts/quietly.sh
mca=/usr/lib/llvm-19/bin/llvm-mca # models of these cores came after the Debian 12 default
assembly=out/arm_cycles.s

for tool in aarch64-linux-gnu-g++ "$mca"; do
  command -v "$tool" >/dev/null || {
    echo "arm_cycles.sh: $tool is missing; 'bash scripts/setup.sh cycles' installs what is needed" >&2
    exit 1
  }
done

mkdir -p out
quietly aarch64-linux-gnu-g++ -std=c++20 -O3 -DNDEBUG -ffp-contract=off -fno-fast-math -fPIC -I. -Iinclude -S \
  rows/row_loops_neon.cpp -o "$assembly"
sed -E -i '/\.(8|16)b,/ s/\b0xf{14}([0-9a-f]{2})\b/0x\1/g' "$assembly" # llvm-mca takes bytes without the sign

# Prints the longest loop of one basic block in a function. Argument: how its symbol begins.
longest_loop() {
  awk -v begins="$1" '
    index($0, begins) == 1 { inside = 1 }
    /\.cfi_endproc/ { inside = 0 }
    !inside { next }
    /^\.L[0-9]+:/ { label = substr($1, 1, length($1) - 1); block = ""; size = 0; next }
    /^\t[a-z]/ { block = block $0 "\n"; ++size }
    $NF ~ /^\.L[0-9]+$/ {
      if ($NF == label && size > longest) { longest = size; loop = block }
      label = ""
    }
    END { printf "%s", loop }' "$assembly"
}

# Prints how many bytes the loop on standard input stores in a turn, apart from registers put by on the stack.
stored_bytes() {
  awk '
    function number(text) { gsub(/\..*|[^0-9]/, "", text); return text }
    BEGIN { width["s"] = width["w"] = 4; width["d"] = width["x"] = 8; width["q"] = 16 }
    $1 ~ /^st[1-4]$/ { # {v0.16b - v3.16b}
      registers = number($3 == "-" ? $4 : $2) - number($2) + 1
      bytes += registers * ($2 ~ /\.(16b|8h|4s|2d)/ ? 16 : 8)
    }
    $1 ~ /^(str|stur|stp)$/ && !/\[sp/ { bytes += width[substr($2, 1, 1)] * ($1 == "stp" ? 2 : 1) }
    END { print bytes + 0 }'
}

# Arguments: name, how the symbol begins, pixels of one turn of the loop, bytes that it stores in a turn. The last
# is checked, as another compiler may unroll the loop.
show() {
  local loop bytes core report
  loop=$(longest_loop "$2")
  [ -n "$loop" ] || {
    echo "arm_cycles.sh: no loop is found in $2" >&2
    return 1
  }
  bytes=$(stored_bytes <<<"$loop")
  [ "$bytes" = "$4" ] || {
    echo "arm_cycles.sh: a turn of $1 stores $bytes bytes, not the $4 of $3 pixels" >&2
    return 1
  }
  printf '%-18s %12.2f' "$1" "$(awk -v count="$(wc -l <<<"$loop")" -v pixels="$3" 'BEGIN { print count / pixels }')"
  for core in "${cores[@]}"; do
    report=$("$mca" -mtriple=aarch64 -mcpu="$core" -iterations=100 <<<"$loop")
    awk -v pixels="$3" '
      /^Total Cycles:/ { cycles = $3 / 100 }
      /^Block RThroughput:/ { least = $3 }
      END { printf "   %6.2f %6.2f", cycles / pixels, least / pixels }' <<<"$report"
  done
  echo
}

cores=(cortex-a53 cortex-a55 cortex-a510 neoverse-n1)
printf '%-18s %12s' 'for a pixel' instructions
printf '   %13s' "${cores[@]}"
printf '\n%-31s' ''
printf '   cycles  least%.0s' "${cores[@]}"
echo
loops=_ZN4vlvk4neon
orders=ELNS_11ChromaOrderE0ELNS_10PixelOrderE0E
show slideColumnSums "${loops}15slideColumnSumsE" 16 $((16 * (2 + 4))) # sums, sums of squares
show smoothRow "${loops}9smoothRowILNS_12ContrastRuleE0E" 16 16
show blendRowPair "${loops}12blendColumnsE" 32 32
show yuvToPixels "${loops}11yuvToPixelsILNS_11ColorimetryE0$orders" 32 $((32 * 4))
show lookUpColors "${loops}12lookUpColorsILNS_9AlphaRuleE1ELNS_10PixelOrderE0E" 16 $((16 * (4 + 4))) # indices, pixels
show applyCurves "${loops}11applyCurvesILNS_9AlphaRuleE1E" 16 $((16 * 4))
show pixelsToYuv "${loops}11pixelsToYuvILNS_11ColorimetryE0$orders" 32 $((32 * 3 / 2))
