#!/usr/bin/env bash
# Builds the engine for pages and serves the demo page to this machine, until it is stopped.
#
#   bash scripts/try_web.sh [PORT]
#
# prints the page's address, http://127.0.0.1:PORT/, when it serves. Without a port: 8080, or a free one where that is
# taken.
set -euo pipefail
cd "$(dirname "$0")/.."

trap 'exit 143' INT TERM # once what is being installed is there
bash scripts/setup.sh web >&2
# In a process group of its own, so that a signal ends all of the build.
set -m
bash scripts/web_modules.sh >&2 &
set +m
trap 'kill -TERM -- -$! || :; wait; exit 143' INT TERM
wait $!
exec node web/demo/serve.mjs "$@"
