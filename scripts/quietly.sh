# shellcheck shell=bash
# For scripts that stand in the project's folder: . scripts/quietly.sh
#
# quietly COMMAND... runs a command with its output in out/SCRIPT.log, which is shown where the command fails. A function may
# stand for the command; its own commands are joined with &&, as bash heeds `set -e` no longer there.
mkdir -p out
log="out/$(basename "$0" .sh).log"
quietly() {
  "$@" >"$log" 2>&1 || {
    cat "$log" >&2
    return 1
  }
}
