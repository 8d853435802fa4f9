#!/usr/bin/env bash
# Runs the GStreamer element: the pipelines and the errors of docs/plugins.md, objects that are left over, and results against
# those of the program. Look at out/gstreamer.jpg, original and result side by side.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

bash scripts/setup.sh program plugins
bash scripts/try.sh >/dev/null
build() {
  cmake -S . -B build-try -DVLVK_GSTREAMER=ON && cmake --build build-try --target gstvlvkmakeup
}
quietly build
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
page="$PWD/docs/plugins.md" out="$PWD/out"
cp samples/portrait.png "$work"
export PATH="$PWD/build-try:$PATH"
export GST_PLUGIN_PATH="$PWD/build-try/gstreamer-1.0" GST_REGISTRY="$work/registry" GST_DEBUG_NO_COLOR=1
export G_DEBUG=fatal-criticals
cd "$work"

fail() {
  echo "try_gstreamer.sh: $*" >&2
  exit 1
}

launch() { timeout -k 5 60 gst-launch-1.0 -q "$@"; }
# After an error gst-launch-1.0 waits now and then for its sink for ever, with any element: an interrupt ends that as well.
launch_error() { timeout -s INT -k 5 5 gst-launch-1.0 -q "$@" >said 2>&1; }
export -f launch

# examples LANGUAGE SCREEN: the lines of the page's fenced blocks, with a camera and a screen that every machine has.
examples() {
  local camera='videotestsrc num-buffers=20 ! video/x-raw,width=1280,height=720 ! jpegenc'
  awk -v fence="\`\`\`$1" '/^## / {here = /GStreamer/} /^```/ {inside = here && $0 == fence; next} inside' "$page" |
    sed -e "s|v4l2src device=/dev/video0|$camera|" -e "s/autovideosink/$2/" \
      -e 's|v4l2sink device=/dev/video9|fakesink|' -e 's/^gst-launch-1.0/launch/'
}

# Expects that a pipeline leaves no object over, whether it ends with an error or not.
leaves_nothing() {
  GST_TRACERS=leaks GST_DEBUG=GST_TRACER:7 launch_error "$@" || true
  grep -qF object-alive.class said || fail "the leaks tracer does not run"
  ! grep 'object-alive, type-name=(string)[^%]' said || fail "objects are left over after: $*"
}

same_as_program() { # FORMAT
  # Of a width whose rows GStreamer does not pad in memory.
  local source=(videotestsrc num-buffers=5 ! "video/x-raw,format=${1^^},width=328,height=242")
  launch "${source[@]}" ! filesink location=in.raw
  launch "${source[@]}" ! vlvkmakeup even-tone=500 ! filesink location=out.raw
  vlvk-makeup video --format "$1" --size 328x242 --even-tone 500 in.raw expected.raw
  cmp out.raw expected.raw || fail "the element and the program differ: $1"
}

try_gstreamer() {
  launch -e videotestsrc num-buffers=25 ! video/x-raw,width=320,height=240 ! vp8enc ! webmmux name=m ! \
    filesink location=in.webm audiotestsrc num-buffers=40 ! vorbisenc ! m.
  examples sh 'y4menc ! filesink location=screen.y4m' >pipelines.sh
  [ "$(grep -c ^launch pipelines.sh)" -ge 5 ] || fail "the page has lost its pipelines"
  bash -e pipelines.sh || fail "a pipeline of docs/plugins.md has failed"
  [ -s out.webm ] || fail "no out.webm"
  head -n 1 screen.y4m | grep -q ' W1280 H360 ' || fail "original and result are not side by side"
  cp both.jpg "$out/gstreamer.jpg"

  examples c fakesink >example.c
  local lib
  lib=/usr/lib/$(gcc -print-multiarch)
  gcc -Wall -Werror example.c -o example -I/usr/include/gstreamer-1.0 -I/usr/include/glib-2.0 \
    "-I$lib/glib-2.0/include" -lgstreamer-1.0 -lgobject-2.0 -lglib-2.0
  timeout -k 5 60 ./example || fail "the example in C has failed"

  # The errors of the page, each with the line that it has there, and a leftover in none. What a line says to put before
  # the element helps.
  local command line help errors=0 helped=0
  while read -r command && read -r line; do
    errors=$((errors + 1))
    command=${command#\$ gst-launch-1.0 -q }
    read -ra words <<<"$command"
    launch_error "${words[@]}" && fail "no error: $command"
    grep -qxF -- "$line" said || fail "$command says: $(cat said)"
    leaves_nothing "${words[@]}"
    help=$(sed -n "s/.*: put '\(.*\)' before vlvkmakeup\.$/\1/p" <<<"$line")
    [ -n "$help" ] || continue
    helped=$((helped + 1))
    command=${command/videotestsrc/videotestsrc num-buffers=3}
    read -ra words <<<"${command/! vlvkmakeup/! $help ! vlvkmakeup}"
    launch "${words[@]}" || fail "this does not help: $line"
  done < <(awk '/^\$ gst-launch/ {print; getline; print}' "$page")
  [ "$errors" = 5 ] && [ "$helped" = 3 ] || fail "the page has lost its errors: $errors, $helped of them with help"
  leaves_nothing videotestsrc num-buffers=9 ! tee name=t t. ! queue ! vlvkmakeup ! fakesink t. ! queue ! fakesink

  for format in i420 nv12 nv21; do same_as_program $format; done
  launch videotestsrc num-buffers=5 ! video/x-raw,format=I420,width=328,height=242 ! y4menc ! filesink location=in.y4m
  vlvk-makeup video in.y4m expected.y4m
  launch videotestsrc num-buffers=5 ! video/x-raw,format=I420,width=328,height=242 ! vlvkmakeup ! y4menc ! \
    filesink location=out.y4m
  cmp out.y4m expected.y4m || fail "the element and the program differ: Y4M"
  launch filesrc location=portrait.png ! pngdec ! vlvkmakeup ! pngenc ! filesink location=out.png
  vlvk-makeup photo portrait.png expected.png
  [ "$(pixels out.png)" = "$(pixels expected.png)" ] || fail "the element and the program differ: the portrait"
}

pixels() { launch filesrc location="$1" ! pngdec ! filesink location=pixels && sha256sum <pixels; }

try_gstreamer
echo "Look at out/gstreamer.jpg"
