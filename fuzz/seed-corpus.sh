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
RTSP_PORT=${SEED_RTSP_PORT:-18291}
WORK=$(mktemp -d)
"$BUILD/bin/devicesim" --port "$PORT" --db "$WORK/sim.db" --scene 320x180 --rate 20 --seed 11 \
  --log "$WORK/sim.log" --rtsp-port "$RTSP_PORT" >/dev/null 2>&1 &
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

# The RTSP server's answers, each as it came: the digest challenge, then the
# answers to OPTIONS, then to authorised DESCRIBE (with its session
# description), SETUP and PLAY.
mkdir -p $CORPUS/rtsp_answer
python3 - 127.0.0.1 "$RTSP_PORT" $CORPUS/rtsp_answer <<'PY'
import hashlib, re, socket, sys
host, port, out = sys.argv[1], int(sys.argv[2]), sys.argv[3]
s = socket.create_connection((host, port), timeout=5)
base = 'rtsp://%s:%d/ch1/h264/sub' % (host, port)
seq = [0]
auth = [None]
def answer():
    data = b''
    while b'\r\n\r\n' not in data:
        data += s.recv(65536)
    head, _, rest = data.partition(b'\r\n\r\n')
    m = re.search(rb'(?i)content-length:\s*(\d+)', head)
    need = int(m.group(1)) if m else 0
    while len(rest) < need:
        rest += s.recv(65536)
    return head + b'\r\n\r\n' + rest[:need]
def ask(method, uri, extra='', name=None):
    seq[0] += 1
    req = '%s %s RTSP/1.0\r\nCSeq: %d\r\n%s' % (method, uri, seq[0], extra)
    if auth[0]:
        realm, nonce = auth[0]
        ha1 = hashlib.md5(('admin:%s:admin123' % realm).encode()).hexdigest()
        ha2 = hashlib.md5(('%s:%s' % (method, uri)).encode()).hexdigest()
        resp = hashlib.md5(('%s:%s:%s' % (ha1, nonce, ha2)).encode()).hexdigest()
        req += 'Authorization: Digest username="admin", realm="%s", nonce="%s", uri="%s", response="%s"\r\n' % (
            realm, nonce, uri, resp)
    s.sendall((req + '\r\n').encode())
    a = answer()
    if name:
        open('%s/sim-%s' % (out, name), 'wb').write(a)
    return a
ask('OPTIONS', base, name='options')
challenge = ask('DESCRIBE', base, 'Accept: application/sdp\r\n', name='challenge')
realm = re.search(rb'realm="([^"]*)"', challenge).group(1).decode()
nonce = re.search(rb'nonce="([^"]*)"', challenge).group(1).decode()
auth[0] = (realm, nonce)
describe = ask('DESCRIBE', base, 'Accept: application/sdp\r\n', name='describe')
control = re.findall(rb'a=control:(\S+)', describe.split(b'\r\n\r\n', 1)[1])[-1].decode()  # the media's
track = control if control.startswith('rtsp:') else base + '/' + control
setup = ask('SETUP', track, 'Transport: RTP/AVP/TCP;unicast;interleaved=0-1\r\n', name='setup')
session = re.search(rb'(?i)session:\s*([^;\r\n]+)', setup).group(1).decode()
ask('PLAY', base, 'Session: %s\r\nRange: npt=0.000-\r\n' % session, name='play')
PY
ls -l $CORPUS/*/sim-*
