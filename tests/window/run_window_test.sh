#!/usr/bin/env bash
# Runs the real-window tests of the platform on a virtual X display: SDL windows, pointer and
# keys through xdotool, presented pixels. Usage: tests/window/run_window_test.sh [build dir]
# Exits 0 with a note when xvfb-run or the test program is missing, so that machines without
# a display server still pass.
set -euo pipefail
BUILD=${1:-build}
BIN="$BUILD/bin/test_platform"
if ! command -v xvfb-run >/dev/null 2>&1; then
  echo "run_window_test: xvfb-run not installed; real-window tests skipped"
  exit 0
fi
if [ ! -x "$BIN" ]; then
  echo "run_window_test: $BIN not built" >&2
  exit 1
fi
# A screen of its own per run (-a), large enough for the windows the tests place.
exec xvfb-run -a -s "-screen 0 1280x1024x24 -nolisten tcp" \
  "$BIN" --gtest_filter='SdlKeys.*:RealWindowTest.*:SdlBackendHeadless.*'
