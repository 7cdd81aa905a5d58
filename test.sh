#!/usr/bin/env bash
# Builds everything and runs every test; extra arguments go to ctest
# (./test.sh -R ConfigTest runs only the matching tests).
set -eo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
qv_install_missing
qv_check_format
qv_build
cd build
# A random starting server number keeps parallel runs on one machine from
# racing for the same display. The tests share that one display, and some
# press keys on it for real, so they run one at a time.
ALSOFT_DRIVERS=null xvfb-run -a -n $((100 + RANDOM % 900)) ctest --output-on-failure "$@"
