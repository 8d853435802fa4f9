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

"$program" photo "$sample" "$images/portrait-compare.jpg" --compare --quality 88
"$program" photo "$sample" "$images/skin-weight.jpg" --compare --show-weight --quality 88
# The face alone, each pixel drawn twice as large: what the smoothing does is lost on the whole picture. The face is small
# as well, and a small radius is right for it.
"$program" sheet "$sample" "$images/sheet.png" --columns whiten=0,25,50,75,100 --rows soften=0,500,1000 \
  --radius 8 --crop 100x104+174+66 --cell 200
"$program" sheet "$sample" "$images/sheet-radius.png" --columns radius=8,20,40,80 --rows soften=1000 --whiten 0 \
  --original --crop 110x130+170+50 --cell 220
/usr/bin/python3 scripts/tone_curves.py "$program" "$images/tone-curves.png"
ls -l "$images"
