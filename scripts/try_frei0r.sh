#!/usr/bin/env bash
# Builds and installs the frei0r plugin, runs it in FFmpeg and melt, and compares what they make of it with the program.
# Runs the lines of docs/plugins.md too. Look at out/frei0r-ffmpeg.png and out/frei0r-melt.png, original and result side by side.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

bash scripts/setup.sh program plugins
bash scripts/try.sh >/dev/null
quietly cmake -S . -B build-try -DVLVK_FREI0R=ON
quietly cmake --build build-try --parallel "$(nproc)" --target VLVKMakeupEngine vlvk_frei0r
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for component in library frei0r; do
  quietly cmake --install build-try --prefix "$work/installed" --component $component
done
mv "$work/installed" "$work/moved" # the plugin finds the library all the same
plugin="$work/moved/lib/frei0r-1/vlvkmakeup.so"
export FREI0R_PATH="${plugin%/*}" PATH="$PWD/build-try:$PATH"
page="$PWD/docs/plugins.md" portrait="$PWD/samples/portrait.png" out="$PWD/out"
cd "$work"

fail() {
  echo "try_frei0r.sh: $*" >&2
  exit 1
}
same() { # WHAT EXPECTED FOUND
  [ "$2" = "$3" ] || fail "$1: expected '$2', found '$3'"
}
make() { timeout 60 ffmpeg -nostdin -y -v error "$@"; }
pixels() { make -i "$1" "${@:2}" -pix_fmt rgba -f md5 -; }
alike() { # WHAT EXPECTED FOUND: pictures
  same "pixels of $1" "$(pixels "$2")" "$(pixels "$3")"
}
edit() { timeout 120 melt "$@" </dev/null >melt.log 2>&1 || fail "melt $*: $(cat melt.log)"; }

same "exported names" "" "$(nm -D --defined-only "$plugin" | awk '{print $3}' | grep -v '^f0r_' || true)"

printf '%s\n' 'LUT_3D_SIZE 2' '0 0 0' '0 0 1' '0 1 0' '0 1 1' '1 0 0' '1 0 1' '1 1 0' '1 1 1' >exchange.cube
vlvk-makeup table convert exchange.cube exchange.vlk
make -i "$portrait" -vf "scale=640:360,format=rgba,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='mod(X,256)'" large.png
make -i "$portrait" -vf scale=208:151 small.png

# FFmpeg. Alpha goes through; y and n are switches.
while IFS=: read -r parameters options; do
  for picture in large small; do
    make -i $picture.png -vf "frei0r=vlvkmakeup${parameters:+:$parameters}" found.png 2>said || fail "FFmpeg, $parameters: $(cat said)"
    same "what is said of $parameters" "" "$(cat said)"
    # shellcheck disable=SC2086  # several words
    vlvk-makeup photo $picture.png expected.png $options
    alike "FFmpeg, $picture, $parameters" expected.png found.png
    [ "$(pixels found.png)" != "$(pixels $picture.png)" ] || fail "$parameters: nothing happens"
  done
done <<'END'
:
0.2:--whiten 20
0.5|0.3:--soften 300
0|1|0.25|n:--whiten 0 --radius 32 --contrast absolute
1|0.5|0.001|y|y|0.7:--whiten 100 --soften 500 --radius 8 --whiten-area skin --even-tone 700
0|0|0|y|n|0|exchange.vlk:--whiten 0 --soften 0 --table exchange.vlk
0.3|1|0|y|n|1|exchange.vlk:--whiten 30 --even-tone 1000 --table exchange.vlk
END
make -loop 1 -i large.png -frames:v 5 -vf "frei0r=vlvkmakeup:0.5|1|0|y|n|0|none.vlk" -update 1 found.png 2>said
same "what is said of no table" "vlvkmakeup: none.vlk: No such file or directory" "$(cat said)"
vlvk-makeup photo large.png expected.png
alike "FFmpeg, no table" expected.png found.png
head -c 5000 large.png >broken.vlk
make -i large.png -vf "frei0r=vlvkmakeup:0.5|1|0|y|n|0|broken.vlk" found.png 2>said
line=$(sed 's/broken.vlk/FILE/' said)
grep -qF -- "| \`$line\` |" "$page" || fail "docs/plugins.md does not have this line: $line"
alike "FFmpeg, a broken table" expected.png found.png

# melt: what editors show, and a clip whose whitening goes from 0 to 1.
edit -query filter=frei0r.vlvkmakeup
sed -n '/^parameters:/,$s/^    title: //p' melt.log >titles
printf '%s\n' whitening softening radius "relative contrast" "whiten skin only" "even tone" table | diff - titles
same "explanations" 8 "$(grep -cE '^ *description: .{20}' melt.log)"
edit -query filters
grep -q ' frei0r.vlvkmakeup$' melt.log || fail "melt does not list the plugin"
make -loop 1 -i "$portrait" -vf scale=640:360 -frames:v 11 -r 25 -pix_fmt yuv420p -c:v ffv1 clip.mkv
lossless=(vcodec=ffv1 pix_fmt=bgra an=1 real_time=-1)
edit clip.mkv -consumer avformat:plain.mkv "${lossless[@]}"
edit clip.mkv -filter frei0r.vlvkmakeup 0="0=0;10=1" 1=0.8 5=0.5 6=exchange.vlk -consumer avformat:found.mkv "${lossless[@]}"
make -i plain.mkv -pix_fmt rgb24 plain%d.png
make -i found.mkv -pix_fmt rgb24 found%d.png
for frame in 1 6 11; do
  vlvk-makeup photo plain$frame.png expected.png --whiten $(((frame - 1) * 10)) --soften 800 --even-tone 500 \
    --table exchange.vlk
  alike "melt, frame $frame" expected.png found$frame.png
done

# The page, on a clip with sound.
cp "$portrait" portrait.png
make -i clip.mkv -f lavfi -i sine=440:duration=1 -c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac in.mp4
awk '/^## / {here = /frei0r/} /^```/ {inside = here && $0 == "```sh"; next} inside' "$page" >page.sh
[ "$(wc -l <page.sh)" -ge 7 ] || fail "the lines of docs/plugins.md are not found"
timeout 120 bash -e page.sh </dev/null >page.log 2>&1 || fail "docs/plugins.md: $(cat page.log)"
same "colours of out.mp4" yuv420p,tv,bt709,bt709,bt709 "$(ffprobe -v error -select_streams v -of csv=p=0 \
  -show_entries stream=pix_fmt,color_range,color_space,color_transfer,color_primaries out.mp4)"
make -i portrait.png -vf scale=1080:-1 wide.png
vlvk-makeup photo wide.png expected.png
alike "FFmpeg, padded" expected.png tall.png

make -i "$portrait" -vf "split[a][b];[b]frei0r=vlvkmakeup[c];[a][c]hstack" "$out/frei0r-ffmpeg.png"
make -loop 1 -i "$portrait" -frames:v 3 -r 25 -pix_fmt yuv444p -c:v ffv1 portrait.mkv
edit portrait.mkv -consumer avformat:left.mkv "${lossless[@]}"
edit portrait.mkv -filter frei0r.vlvkmakeup -consumer avformat:right.mkv "${lossless[@]}"
make -i left.mkv -i right.mkv -lavfi hstack -frames:v 1 -pix_fmt rgb24 "$out/frei0r-melt.png"
echo "Look at out/frei0r-ffmpeg.png and out/frei0r-melt.png"
