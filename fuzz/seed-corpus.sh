#!/usr/bin/env bash
# Refreshes the emulator-made seeds of the fuzz corpora: starts the emulator of
# BUILD_DIR with small pictures, fetches one document of each kind, a few
# seconds of the alarm stream and a few pictures, and writes them under
# fuzz/corpus/<target>/ as "sim-*" files. Inputs kept from crashes are left alone.
#   fuzz/seed-corpus.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=${1:-build}
CORPUS=fuzz/corpus
PORT=${SEED_PORT:-18290}
WORK=$(mktemp -d)
"$BUILD/bin/devicesim" --port "$PORT" --db "$WORK/sim.db" --scene 320x180 --rate 20 --seed 11 \
  --log "$WORK/sim.log" >/dev/null 2>&1 &
SIM=$!
trap 'kill $SIM 2>/dev/null; wait $SIM 2>/dev/null; rm -rf "$WORK"' EXIT
BASE="http://127.0.0.1:$PORT"
until curl -s -o /dev/null "$BASE/control/stats"; do sleep 0.1; done
get() { curl -s --digest -u admin:admin123 "$@"; }

get "$BASE/DVAPI/Intelligent/FDLib/capabilities" > $CORPUS/xml_documents/sim-capabilities.xml
curl -s -X POST "$BASE/control/library" -d '{"FDID":"3","name":"Staff","type":"normal","capacity":50}' >/dev/null
get "$BASE/DVAPI/Intelligent/FDLib" > $CORPUS/xml_documents/sim-libraries.xml
get "$BASE/DVAPI/Intelligent/faceContrast/personInfoExtend" > $CORPUS/xml_documents/sim-extend.xml
get "$BASE/DVAPI/System/deviceInfo" > $CORPUS/xml_documents/sim-deviceinfo.xml
get -X POST "$BASE/DVAPI/Intelligent/FDLib/FDSearch" -d '<FaceAppendData><name>a</name><FDID>3</FDID></FaceAppendData>' \
  > $CORPUS/xml_documents/sim-search.xml
curl -s -X POST "$BASE/control/fault" -d '{"path":"/DVAPI/Intelligent/FDLib","status":503,"subStatus":843,"count":1}' >/dev/null
get "$BASE/DVAPI/Intelligent/FDLib" > $CORPUS/xml_documents/sim-status.xml

get "$BASE/DVAPI/System/cityCode?format=json" > $CORPUS/json_documents/sim-citycode.json
get "$BASE/DVAPI/System/channels/status" > $CORPUS/json_documents/sim-channels.json
curl -s -X POST "$BASE/control/settings" -d '{"hfpdPolls":1}' >/dev/null
get "$BASE/DVAPI/SDT/HFPD/searchTask/result/recordData/seed1?format=json" > $CORPUS/json_documents/sim-hfpd.json
# The emulator answers faults in XML; the JSON form of the same status document:
printf '{"statusCode":6,"statusString":"Injected failure","subStatusCode":4}' > $CORPUS/json_documents/sim-status.json

# A few seconds of the stream: every event kind, small pictures.
get --max-time 3 "$BASE/DVAPI/Event/notification/alertStream" > "$WORK/stream" || true
head -c 24000 "$WORK/stream" > $CORPUS/alarm_stream/sim-stream
# The event documents of that stream, one per file.
python3 - "$WORK/stream" $CORPUS/alarm_event <<'PY'
import sys, re
data = open(sys.argv[1], 'rb').read()
docs = re.findall(rb'Content-Type: application/json\r\n(?:[^\r\n]+\r\n)*\r\n(\{.*?\})\r\n--', data, re.S)
seen = set()
for d in docs:
    code = re.search(rb'"eventCode":(\d+)', d)
    key = code.group(1) if code else b'x'
    if key in seen:
        continue
    seen.add(key)
    open('%s/sim-event-%s.json' % (sys.argv[2], key.decode()), 'wb').write(d)
PY

get "$BASE/DVAPI/pictures/hfpd/seed1/1.jpg" > $CORPUS/pictures/sim-scene.jpg
get "$BASE/DVAPI/pictures/hfpd/seed1/1.jpg?face=1" > $CORPUS/pictures/sim-face.jpg
get --max-time 1 "$BASE/DVAPI/Streaming/channels/1/mjpeg" > "$WORK/video" || true
python3 - "$WORK/video" $CORPUS/pictures/sim-frame.jpg <<'PY'
import sys
data = open(sys.argv[1], 'rb').read()
start = data.find(b'\xff\xd8')
end = data.find(b'\xff\xd9', start)
if start >= 0 and end > start:
    open(sys.argv[2], 'wb').write(data[start:end + 2])
PY
ls -l $CORPUS/*/sim-*
