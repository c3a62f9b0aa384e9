#!/usr/bin/env bash
# Runs mxrun with real windows on a virtual X display, clicks a button of the buttons example
# through the X server with xdotool, and checks that the button's Click event came out and that
# a screenshot of the real window was written. Usage: tests/window/run_mxrun_window_test.sh [build dir]
# Exits 0 with a note when xvfb-run or xdotool is missing, so that machines without them pass.
set -euo pipefail
ROOT=$(cd "$(dirname "$0")/../.." && pwd)
BUILD=$(cd "${1:-build}" && pwd)
MXRUN="$BUILD/bin/mxrun"
for tool in xvfb-run xdotool; do
  if ! command -v "$tool" >/dev/null 2>&1; then
    echo "run_mxrun_window_test: $tool not installed; skipped"
    exit 0
  fi
done
[ -x "$MXRUN" ] || { echo "run_mxrun_window_test: $MXRUN not built" >&2; exit 1; }

OUT=$(mktemp -d)
trap 'rm -rf "$OUT"' EXIT

# Inside the display: start the form, find its window, click the first button (Left 180,
# Top 180, 1920 x 480 twips: client pixels 12..140 x 12..44), and let the time-out end the run.
cat > "$OUT/inner.sh" <<INNER
set -euo pipefail
"$MXRUN" "$ROOT/examples/buttons.frm" --window --timeout 8000 --png "$OUT/shot.png" > "$OUT/events.txt" 2> "$OUT/err.txt" &
pid=\$!
win=\$(xdotool search --sync --onlyvisible --name "Bot" | head -n 1)
sleep 1
xdotool mousemove --window "\$win" 60 28
sleep 0.2
xdotool click 1
wait \$pid
INNER
xvfb-run -a -s "-screen 0 1280x1024x24 -nolisten tcp" bash "$OUT/inner.sh" || {
  echo "run_mxrun_window_test: the run failed" >&2; cat "$OUT/err.txt" >&2; exit 1; }

fail=0
grep -q '^EVENT cmdBlue.Click' "$OUT/events.txt" || { echo "no Click event of cmdBlue:" >&2; cat "$OUT/events.txt" >&2; fail=1; }
grep -q '^EVENT .*\.Load' "$OUT/events.txt" || { echo "no Load event" >&2; fail=1; }
[ -s "$OUT/shot.png" ] && head -c 8 "$OUT/shot.png" | grep -q PNG || { echo "no screenshot written" >&2; fail=1; }
cp "$OUT/shot.png" "$BUILD/window-shot.png" 2>/dev/null || true
[ $fail -eq 0 ] && echo "run_mxrun_window_test: Click seen through the X server; screenshot written"
exit $fail
