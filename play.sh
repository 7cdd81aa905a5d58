#!/usr/bin/env bash
# Builds everything and runs the game from build/run (its assets folder).
set -eo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
qv_install_missing
qv_build
cd build/run
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display: running under xvfb-run (nothing will be visible)."
  exec xvfb-run -a ./quorvelle-game
fi
exec ./quorvelle-game
