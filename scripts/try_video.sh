#!/usr/bin/env bash
# Beautifies a short MP4 with the command lines of docs/video.md and checks what they make of it: frames, size, duration,
# sound, and colours where nothing is to be beautified. Look at out/video.mp4, made of out/video-in.mp4.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh program video
bash scripts/try.sh >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
page="$PWD/docs/video.md" portrait="$PWD/samples/portrait.png" out="$PWD/out"
export PATH="$PWD/build-try:$PATH"
export SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy # for ffplay, where there is no screen
cd "$work"

fail() {
  echo "try_video.sh: $*" >&2
  exit 1
}

# Prints a fenced block of the page by its number.
example() {
  awk -v number="$1" '/^```sh$/ {++block; inside = 1; next} /^```$/ {inside = 0} inside && block == number' "$page"
}

# All that the result must have in common with the clip: pictures, duration, the bytes of the sound.
facts() {
  ffprobe -v error -count_frames -select_streams v \
    -show_entries stream=width,height,r_frame_rate,nb_read_frames,color_space,color_range -of csv=p=0 "$1"
  ffprobe -v error -show_entries format=duration -of csv=p=0 "$1" | cut -c1-3
  ffmpeg -nostdin -v error -i "$1" -map 0:a -c copy -f md5 -
}

# The likeness of the luma of clip and result in decibels. A wrong matrix gives less than 40, a wrong range less than 30.
likeness() {
  ffmpeg -nostdin -hide_banner -i in.mp4 -i out.mp4 -lavfi '[0:v][1:v]psnr' -f null - 2>&1 |
    sed -n 's/.*PSNR y:\([0-9]*\).*/\1/p'
}

# The portrait, slowly coming closer, with a tone.
ffmpeg -nostdin -v error -loop 1 -i "$portrait" -f lavfi -i sine=440:duration=2 \
  -vf "crop=iw:iw*9/16:0:0,zoompan=z=1+on/200:d=1:s=640x360:fps=25,scale=out_color_matrix=bt709:out_range=tv" \
  -pix_fmt yuv420p -colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv \
  -c:v libx264 -preset veryfast -crf 12 -c:a aac -shortest -t 2 in.mp4

for number in 1 2; do
  example "$number" >plain.sh
  sed 's/vlvk-makeup video/& --whiten 0 --soften 0/' plain.sh >neutral.sh
  bash neutral.sh || fail "example $number of docs/video.md has failed"
  [ "$(likeness)" -ge 42 ] || fail "example $number of docs/video.md changes colours: $(likeness) dB"
  bash plain.sh || fail "example $number of docs/video.md has failed"
  [ "$(likeness)" -lt 42 ] || fail "example $number of docs/video.md beautifies nothing"
  [ "$(facts in.mp4)" = "$(facts out.mp4)" ] ||
    fail "example $number of docs/video.md makes $(facts out.mp4) of $(facts in.mp4)"
done
bash <(example 3) || fail "example 3 of docs/video.md has failed"
cp in.mp4 "$out/video-in.mp4"
cp out.mp4 "$out/video.mp4"
echo "Look at out/video.mp4"
