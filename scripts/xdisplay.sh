# Sourced by scripts that show windows under wine: starts a virtual X display
# (Xvfb) for this script's run, exports DISPLAY and stops it on exit. Without
# Xvfb, DISPLAY stays as it is and the window tests say they were skipped.
start_virtual_display() {
  command -v Xvfb >/dev/null || { echo "no Xvfb: windows cannot be shown" >&2; return 0; }
  local fifo pid
  fifo=$(mktemp -u)
  mkfifo "$fifo"
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$fifo" >/dev/null 2>&1 &
  pid=$!
  local number
  read -r -t 20 number <"$fifo" || number=""
  rm -f "$fifo"
  if [ -z "$number" ]; then
    kill "$pid" 2>/dev/null || true
    echo "Xvfb did not start: windows cannot be shown" >&2
    return 0
  fi
  export DISPLAY=":$number"
  # A wine desktop left from an earlier run keeps its own display: end it, so
  # that the windows of this run open on this one.
  if command -v wineserver >/dev/null; then wineserver -k 2>/dev/null || true; fi
  trap "kill $pid 2>/dev/null || true" EXIT
}
