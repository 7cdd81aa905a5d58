#!/usr/bin/env bash
# Builds everything and runs every test; extra arguments go to ctest
# (./test.sh -R ConfigTest runs only the matching tests).
set -eo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
qv_install_missing
qv_build
cd build
ALSOFT_DRIVERS=null xvfb-run -a ctest --output-on-failure -j "$(nproc)" "$@"
