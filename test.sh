#!/usr/bin/env bash
# Builds everything and runs every test; extra arguments go to ctest
# (./test.sh -R ConfigTest runs only the matching tests).
#   ./test.sh --sanitize ...  the same under AddressSanitizer and
#                             UndefinedBehaviorSanitizer, built in build-sanitize/
# A full run (no ctest arguments, no --sanitize) then runs each fuzz target
# for QV_FUZZ_SECONDS (20 by default, 0 skips them) when clang is installed.
set -eo pipefail
cd "$(dirname "$0")"
sanitize=0
if [ "${1:-}" = "--sanitize" ]; then
  sanitize=1
  shift
fi
. scripts/prepare.sh
qv_install_missing
qv_check_format
build=build
if [ $sanitize -eq 1 ]; then
  build=build-sanitize
  qv_sanitizer_env
  qv_build "$build" -DQV_SANITIZE=ON
else
  qv_build
fi
# A random starting server number keeps parallel runs on one machine from
# racing for the same display. The tests share that one display, and some
# press keys on it for real, so they run one at a time.
(cd "$build" &&
  ALSOFT_DRIVERS=null xvfb-run -a -n $((100 + RANDOM % 900)) \
    env LD_PRELOAD="${QV_PRELOAD_GL:-}" ctest --output-on-failure "$@")
if [ $sanitize -eq 0 ] && [ $# -eq 0 ] && [ "${QV_FUZZ_SECONDS:-20}" != 0 ]; then
  qv_fuzz "${QV_FUZZ_SECONDS:-20}"
fi
