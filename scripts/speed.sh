#!/usr/bin/env bash
# Times the engine against what else could be used, and shows the figures as a table and as a picture.
#
#   bash scripts/speed.sh [CPUS]
#
# CPUS: two processors for the measurements, such as 0,1 (the default). Whatever is meant for one processor runs on the
# last of them. Everything that is compared is measured in the same run, in turns.
# Results: out/speed.md (the table), out/speed.png (the picture), out/speed-*.json (all figures).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh
cpus="${1:-0,1}"
one_cpu="${cpus##*,}"

bash scripts/setup.sh program bench plot
quietly cmake -S . -B build-speed -DCMAKE_BUILD_TYPE=Release -DVLVK_BUILD_TOOLS=ON -DVLVK_BUILD_BENCHMARKS=ON \
  -DVLVK_BUILD_TESTS=OFF -DVLVK_BUILD_JAVA=OFF -DVLVK_JNI_BINDINGS=OFF
quietly cmake --build build-speed --parallel "$(nproc)" --target vlvk_bench

# Repetitions of all benchmarks are mixed, so that a change of the machine's speed meets them alike.
measure() { # NAME CPUS FILTER [OPTION...]
  echo "Measuring: $1" >&2
  quietly taskset -c "$2" build-speed/vlvk_bench --benchmark_filter="$3" --benchmark_repetitions="${VLVK_SPEED_REPETITIONS:-9}" \
    --benchmark_enable_random_interleaving=true --benchmark_min_time=0.1 --benchmark_report_aggregates_only=true \
    --benchmark_out="out/speed-$1.json" --benchmark_out_format=json "${@:4}"
}

best=$(build-speed/vlvk_bench --benchmark_list_tests --size=1280x720 | sed -n 's|^blend/plane/\([^/]*\)/.*|\1|p' | head -1)
peers="$best|libyuv|opencv|memcpy|composition(_strips)?"
frames="frame/(in_place|first)/($peers|sse2|scalar)/.*"
steps="(copy|smoothing|blend|color_table|to_rgba|to_nv21)/.*/($peers)/.*|box_sums/float_squares/.*/half:23"
measure one "$one_cpu" "^($frames|$steps)\$" --size=1280x720 --size=1920x1080 --size=3840x2160
measure two "$cpus" "^frame/in_place/($peers)/.*/threads:(4/radius:20|2)/" --size=1920x1080 --size=3840x2160
VLVK_SPEED_REPETITIONS=1 measure memory "$cpus" '^frame/memory/' --size=1920x1080
/usr/bin/python3 scripts/speed_report.py out
