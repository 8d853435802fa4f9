#!/usr/bin/env bash
# Tries the package of web/ in Chromium and Firefox, as a project has it that installs it, with a camera that shows the
# sample picture, and compares its frames with those of the program.
#
#   bash scripts/try_web_browsers.sh [FILE...]     files of web/test/browser; without, all
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

work=out/web
project=$work/project
makeup=build-try/vlvk-makeup

fail() {
  echo "try_web_browsers.sh: $*" >&2
  exit 1
}

within() { # SECONDS COMMAND...
  quietly timeout --kill-after=10 "$@"
}

bash scripts/setup.sh web video browsers
mkdir -p "$work"
bash scripts/try.sh >/dev/null
bash scripts/web_package.sh "$work"
package=$(realpath "$work"/vlvk-makeup-*.tgz)
strangers=$(tar -tzf "$package" | grep -vE '^package/(package\.json|README\.md|src/[a-z_]+\.(js|d\.ts|wasm))$' || true)
[ -z "$strangers" ] || fail "$package has" $strangers

# A project that installs the package, checks its types, and is bundled.
rm -rf "$project"
cp -r web/test/browser/bundle "$project"
within 60 npm install --prefix "$project" --offline --ignore-scripts --no-audit --no-fund --no-save "$package"
within 60 web/node_modules/.bin/tsc --noEmit --strict --target es2022 --module esnext --moduleResolution bundler \
  "$project/main.ts" "$project/addresses.d.ts"
within 60 web/node_modules/.bin/vite build --configLoader native "$project"

# A second of video: the picture, seen through a window that moves. And what the program makes of it, under two looks;
# the numbers of the second are those of WARM in web/test/browser/support/lab.js.
make() { ffmpeg -nostdin -y -v error "$@"; }
make -loop 1 -i samples/portrait.png -frames:v 25 -r 30 -pix_fmt yuv420p \
  -vf 'scale=1600:-2,crop=1280:720:x=12*n:y=40+4*n' "$work/camera.y4m"
make -stream_loop 2 -i "$work/camera.y4m" -vf scale=320:180 -c:v libvpx -deadline realtime -cpu-used 8 "$work/clip.webm"
"$makeup" table neutral "$work/neutral.png"
make -i "$work/neutral.png" -vf hue=h=20 "$work/warm.png"
"$makeup" table pack "$work/warm.png" "$work/warm.vlk"
look=(--whiten 80 --soften 600 --radius 13 --contrast absolute --whiten-area skin --even-tone 500)
"$makeup" video --quiet "$work/camera.y4m" "$work/default.y4m"
"$makeup" video --quiet "$work/camera.y4m" "$work/warm.y4m" --table "$work/warm.vlk" "${look[@]}"
cp samples/portrait.png "$work/original.png"
"$makeup" photo samples/portrait.png "$work/portrait.png" "${look[@]}"

files=("$@")
[ $# -gt 0 ] || files=(web/test/browser/*.test.js)
within 300 node --test --test-concurrency=2 --test-reporter=spec --test-timeout=120000 "${files[@]}"
