#!/usr/bin/env bash
# Makes the pictures of the documents from the sample picture: docs/images. All but speed.png, which is scripts/speed.sh's.
#
#   bash scripts/pictures.sh
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh plot
bash scripts/try.sh
program=build-try/vlvk-makeup
sample=samples/portrait.png
images=docs/images
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
/usr/bin/python3 scripts/sample_variants.py "$sample" "$work"

# A sheet of one row, without whitening, which would hide part of what changes.
row() {
  "$program" sheet "$1" "$images/$2" --original --rows soften=1000 --whiten 0 "${@:3}"
}

"$program" photo "$sample" "$images/portrait-compare.jpg" --compare --quality 88
"$program" photo "$sample" "$images/skin-weight.jpg" --compare --show-weight --quality 88
"$program" photo "$sample" "$images/mask.jpg" --compare --show-weight --mask "$work/mask.png" --quality 88
# The face alone, each pixel drawn twice as large: what the smoothing does is lost on the whole picture. The face is small
# as well, and a small radius is right for it.
"$program" sheet "$sample" "$images/sheet.png" --columns whiten=0,25,50,75,100 --rows soften=0,500,1000 \
  --radius 8 --crop 100x104+174+66 --cell 200
"$program" sheet "$sample" "$images/whiten-area.jpg" --original --columns whiten-area=all,skin --rows soften=1000 \
  --whiten 100 --crop 300x250+60+0 --cell 280
row "$sample" sheet-radius.png --columns radius=auto,8,40,80 --crop 110x130+170+50 --cell 220
row "$work/dark.png" radius-dark.jpg --columns radius=auto,8,40,80 --crop 110x130+170+50 --cell 160
row "$work/third.png" radius-third.jpg --columns radius=auto,24,40,80 --crop 37x43+57+17 --cell 160
row "$sample" contrast.jpg --columns contrast=relative,absolute --crop 150x150+150+14 --cell 240
row "$work/dark.png" contrast-dark.jpg --columns contrast=relative,absolute --crop 150x150+150+14 --cell 240
"$program" sheet "$work/spots.png" "$images/even-tone.jpg" --original --columns even-tone=0,500,1000 \
  --rows radius=8,auto --whiten 0 --crop 84x84+184+80 --cell 180
bash scripts/try_gstreamer.sh
cp out/gstreamer.jpg "$images/gstreamer.jpg"
/usr/bin/python3 scripts/tone_curves.py "$program" "$images/tone-curves.png"
ls -l "$images"
