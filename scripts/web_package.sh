#!/usr/bin/env bash
# Makes the npm package vlvk-makeup-VERSION.tgz: builds both modules, checks types, says the sizes.
#
#   bash scripts/web_package.sh [FOLDER]     out/ without
set -euo pipefail
folder=$(realpath -m -- "${1:-$(dirname "$0")/../out}")
cd "$(dirname "$0")/.."
. scripts/quietly.sh

most=150000 # bytes of the package

fail() {
  echo "web_package.sh: $*" >&2
  exit 1
}

version=$(sed -nE 's/^#define VLVK_VERSION_(MAJOR|MINOR|PATCH) ([0-9]+)$/\2/p' include/vlvk/version.h | paste -sd.)
bash scripts/setup.sh web
found=$(node --version)
[ "$(node -p 'parseInt(process.versions.node)')" -ge 20 ] || fail "node 20 or newer is needed, here is ${found#v}"
in_package=$(node -p 'require("./web/package.json").version')
[ "$in_package" = "$version" ] || fail "web/package.json has version $in_package, include/vlvk/version.h $version"

bash scripts/web_modules.sh

# npm's own note of what is installed is as old as the last installation.
installed=web/node_modules/.package-lock.json
if [ ! -e "$installed" ] || [ web/package-lock.json -nt "$installed" ]; then
  quietly npm ci --prefix web --ignore-scripts --no-audit --no-fund
fi
quietly web/node_modules/.bin/tsc --project web/tsconfig.json

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
quietly npm pack ./web --ignore-scripts --pack-destination "$work"
package=vlvk-makeup-$version.tgz
bytes=$(stat -c %s "$work/$package")
[ "$bytes" -lt "$most" ] || fail "$package has $bytes bytes, $most are too many"
mkdir -p "$folder"
cp "$work/$package" "$folder/.$package"
mv "$folder/.$package" "$folder/$package"

for module in simd scalar; do
  echo "$module.wasm: $(stat -c %s "web/src/$module.wasm") bytes, $(gzip -9 -c "web/src/$module.wasm" | wc -c) with gzip"
done
echo "$folder/$package: $bytes bytes"
