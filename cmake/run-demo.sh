#!/usr/bin/env bash
# Starts the device emulator and the host with the module open.
# With a display it runs until the window is closed; without one it runs
# under Xvfb at 1920x1080 for a while, writes a snapshot and prints its folder.
set -euo pipefail
BUILD_DIR=${1:-build}
BIN=$(cd "$BUILD_DIR/bin" && pwd)
DEMO_DIR=${BT_DEMO_DIR:-$(pwd)/$BUILD_DIR/demo}
mkdir -p "$DEMO_DIR"
SIM_PORT=${BT_SIM_PORT:-18080}
CONFIG="$DEMO_DIR/vantordesk.json"

SIM_PID=""
cleanup() { [ -n "$SIM_PID" ] && kill "$SIM_PID" 2>/dev/null || true; }
trap cleanup EXIT

if [ -x "$BIN/devicesim" ]; then
  "$BIN/devicesim" --listen 127.0.0.1 --port "$SIM_PORT" --channels 4 --rate 2 --seed 7 \
      --user admin --password demo123 --db "$DEMO_DIR/devicesim.db" --serial DEMO0001 \
      >"$DEMO_DIR/devicesim.log" 2>&1 &
  SIM_PID=$!
fi

cat > "$CONFIG" <<JSON
{
  "language": 2,
  "regionMode": 1,
  "brand": [0, 0, 0],
  "devices": [
    { "id": "DEMO0001", "name": "Entrance thermal camera", "address": "127.0.0.1", "port": $SIM_PORT,
      "scheme": "http", "user": "admin", "password": "demo123",
      "channels": [
        { "channel": 1, "cameraId": "DEMO0001-CH1", "name": "Main entrance", "area": "Lobby" },
        { "channel": 2, "cameraId": "DEMO0001-CH2", "name": "Side gate", "area": "Lobby" },
        { "channel": 3, "cameraId": "DEMO0001-CH3", "name": "Staff door", "area": "Back office" },
        { "channel": 4, "cameraId": "DEMO0001-CH4", "name": "Loading bay", "area": "Back office" }
      ] }
  ]
}
JSON

# The page reopens what was playing when it was left: the host's saved state
# lists the four cameras (names are base64 in that file), so the demo starts
# with all four playing.
STATE="$DEMO_DIR/pagestate.json"
state_items=""
for cam in DEMO0001-CH1 DEMO0001-CH2 DEMO0001-CH3 DEMO0001-CH4; do
  state_items+="${state_items:+, }{ \"name\": \"$(printf %s "$cam" | base64)\", \"values\": [] }"
done
printf '{ "m_BodyTemperatureBtn": [ %s ] }\n' "$state_items" > "$STATE"

# The demo keeps its settings beside its configuration, so that another
# checkout's saved voice paths are never picked up.
ARGS=(--modules "$BIN/modules" --config "$CONFIG" --state "$STATE" --data-dir "$DEMO_DIR/data" --open m_BodyTemperatureBtn)
if [ -n "${DISPLAY:-}" ] && [ -z "${CI:-}" ]; then
  "$BIN/vantordesk" "${ARGS[@]}"
else
  SNAP="$DEMO_DIR/snapshot"
  mkdir -p "$SNAP"
  if command -v xvfb-run >/dev/null 2>&1; then
    xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" \
      "$BIN/vantordesk" "${ARGS[@]}" --quit-after "${BT_DEMO_SECONDS:-12}" --snapshot "$SNAP" >"$DEMO_DIR/vantordesk.log" 2>&1
  else
    QT_QPA_PLATFORM=offscreen "$BIN/vantordesk" "${ARGS[@]}" --quit-after "${BT_DEMO_SECONDS:-12}" \
      --snapshot "$SNAP" >"$DEMO_DIR/vantordesk.log" 2>&1
  fi
  echo "$SNAP"
fi
