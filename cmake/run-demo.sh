#!/usr/bin/env bash
# Starts the device emulator and the host with the module open.
# With a display it runs until the window is closed; without one it runs
# under Xvfb at 1920x1080 for a while, writes a snapshot and prints its folder.
# When PostgreSQL 15 is installed the two stations of a site share a private
# site record: this one, and a second station (a headless host with an
# emulated camera of its own) writing to the same server.
set -euo pipefail
BUILD_DIR=${1:-build}
BIN=$(cd "$BUILD_DIR/bin" && pwd)
DEMO_DIR=${BT_DEMO_DIR:-$(pwd)/$BUILD_DIR/demo}
mkdir -p "$DEMO_DIR"
SIM_PORT=${BT_SIM_PORT:-18080}
RTSP_PORT=${BT_RTSP_PORT:-$((SIM_PORT + 474))}
CONFIG="$DEMO_DIR/vantordesk.json"

SIM_PID=""
SIM2_PID=""
HOST2_PID=""
PG_BIN=/usr/lib/postgresql/15/bin
PG_DIR=""
as_pg() { if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi; }
cleanup() {
  for pid in $HOST2_PID $SIM2_PID $SIM_PID; do kill "$pid" 2>/dev/null || true; done
  if [ -n "$PG_DIR" ]; then
    as_pg "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -m fast -w stop >/dev/null 2>&1 || true
    rm -rf "$PG_DIR"
  fi
}
trap cleanup EXIT

# The site record: a private cluster in a temporary folder on a loopback port.
PG_PORT=${BT_PG_PORT:-$((SIM_PORT + 1100))}
PG_PASSWORD=demo-site-secret
SITE_JSON=""
if [ -x "$PG_BIN/initdb" ] && { [ "$(id -u)" -ne 0 ] || id postgres >/dev/null 2>&1; }; then
  PG_DIR=$(mktemp -d)
  printf '%s' "$PG_PASSWORD" > "$PG_DIR/pw"
  [ "$(id -u)" -eq 0 ] && chown -R postgres "$PG_DIR"
  as_pg "$PG_BIN/initdb" -D "$PG_DIR/data" -U bt --pwfile="$PG_DIR/pw" -A scram-sha-256 --no-sync >/dev/null
  as_pg "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -o "-p $PG_PORT -k $PG_DIR -c listen_addresses=127.0.0.1" \
      -l "$PG_DIR/log" -w start >/dev/null
  site_json() {
    printf '"siteRecord": { "host": "127.0.0.1", "port": %s, "database": "postgres", "user": "bt", "password": "%s", "sslmode": "prefer", "station": "%s" },' \
      "$PG_PORT" "$PG_PASSWORD" "$1"
  }
  SITE_JSON=$(site_json "Main entrance station")
fi

if [ -x "$BIN/devicesim" ]; then
  "$BIN/devicesim" --listen 127.0.0.1 --port "$SIM_PORT" --channels 4 --rate 2 --seed 7 \
      --user admin --password demo123 --db "$DEMO_DIR/devicesim.db" --serial DEMO0001 --rtsp-port "$RTSP_PORT" \
      >"$DEMO_DIR/devicesim.log" 2>&1 &
  SIM_PID=$!
fi

cat > "$CONFIG" <<JSON
{
  $SITE_JSON
  "language": 2,
  "regionMode": 1,
  "brand": [0, 0, 0],
  "devices": [
    { "id": "DEMO0001", "name": "Entrance thermal camera", "address": "127.0.0.1", "port": $SIM_PORT,
      "scheme": "http", "user": "admin", "password": "demo123", "rtspPort": $RTSP_PORT,
      "channels": [
        { "channel": 1, "cameraId": "DEMO0001-CH1", "name": "Main entrance", "area": "Lobby",
          "mainStream": "/ch1/h264/main", "subStream": "/ch1/h264/sub" },
        { "channel": 2, "cameraId": "DEMO0001-CH2", "name": "Side gate", "area": "Lobby",
          "mainStream": "/ch2/h264/main", "subStream": "/ch2/h264/sub" },
        { "channel": 3, "cameraId": "DEMO0001-CH3", "name": "Staff door", "area": "Back office",
          "mainStream": "/ch3/h264/main", "subStream": "/ch3/h264/sub" },
        { "channel": 4, "cameraId": "DEMO0001-CH4", "name": "Loading bay", "area": "Back office",
          "mainStream": "/ch4/h264/main", "subStream": "/ch4/h264/sub" }
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

# The second station of the site: its own emulated camera and a host without
# a screen, writing to the same site record.
if [ -n "$PG_DIR" ] && [ -x "$BIN/devicesim" ]; then
  SIM2_PORT=$((SIM_PORT + 20))
  "$BIN/devicesim" --listen 127.0.0.1 --port "$SIM2_PORT" --channels 2 --rate 1 --seed 11 \
      --user admin --password demo456 --db "$DEMO_DIR/devicesim2.db" --serial DEMO0002 --rtsp-port "$((SIM2_PORT + 474))" \
      >"$DEMO_DIR/devicesim2.log" 2>&1 &
  SIM2_PID=$!
  cat > "$DEMO_DIR/station2.json" <<JSON
{
  $(site_json "Side entrance station")
  "language": 2,
  "devices": [
    { "id": "DEMO0002", "name": "Side entrance thermal camera", "address": "127.0.0.1", "port": $SIM2_PORT,
      "scheme": "http", "user": "admin", "password": "demo456", "rtspPort": $((SIM2_PORT + 474)),
      "channels": [
        { "channel": 1, "cameraId": "DEMO0002-CH1", "name": "Side entrance", "area": "East wing" },
        { "channel": 2, "cameraId": "DEMO0002-CH2", "name": "Car park door", "area": "East wing" }
      ] }
  ]
}
JSON
  echo '{}' > "$DEMO_DIR/station2-state.json"
  QT_QPA_PLATFORM=offscreen "$BIN/vantordesk" --modules "$BIN/modules" --config "$DEMO_DIR/station2.json" \
      --state "$DEMO_DIR/station2-state.json" --data-dir "$DEMO_DIR/data2" --open m_BodyTemperatureBtn \
      >"$DEMO_DIR/station2.log" 2>&1 &
  HOST2_PID=$!
fi

# The demo keeps its settings beside its configuration, so that another
# checkout's saved voice paths are never picked up.
ARGS=(--modules "$BIN/modules" --config "$CONFIG" --state "$STATE" --data-dir "$DEMO_DIR/data" --open m_BodyTemperatureBtn)
if [ -n "${DISPLAY:-}" ] && [ -z "${CI:-}" ]; then
  "$BIN/vantordesk" "${ARGS[@]}"
else
  SNAP="$DEMO_DIR/snapshot"
  mkdir -p "$SNAP"
  # With the site record, a second picture: the screening history of the
  # whole site (ScreeningHistoryWindow.png), both stations' events.
  if [ -n "$PG_DIR" ]; then
    ARGS+=(--operate m_pReportBtn --operate m_pHistoryScope=1)
  fi
  if command -v xvfb-run >/dev/null 2>&1; then
    xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" \
      "$BIN/vantordesk" "${ARGS[@]}" --quit-after "${BT_DEMO_SECONDS:-12}" --snapshot "$SNAP" >"$DEMO_DIR/vantordesk.log" 2>&1
  else
    QT_QPA_PLATFORM=offscreen "$BIN/vantordesk" "${ARGS[@]}" --quit-after "${BT_DEMO_SECONDS:-12}" \
      --snapshot "$SNAP" >"$DEMO_DIR/vantordesk.log" 2>&1
  fi
  echo "$SNAP"
fi
if [ -n "$PG_DIR" ]; then
  echo "site record (events per station):"
  PGPASSWORD=$PG_PASSWORD psql -h 127.0.0.1 -p "$PG_PORT" -U bt -d postgres -At \
    -c "SELECT station || ': ' || count(*) FROM bt_events GROUP BY station ORDER BY station" 2>/dev/null || true
fi
