#!/usr/bin/env bash
# Installs the Debian packages the build, the tests, the demo and the fuzz
# targets (clang with its libFuzzer runtime) need, when missing.
set -euo pipefail
PKGS=(
  cmake make g++ pkg-config
  qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev
  libboost-thread-dev libsqlite3-dev sqlite3 liblog4cxx-dev libxml2-dev
  libcurl4-openssl-dev libcpp-httplib-dev nlohmann-json3-dev libssl-dev openssl
  libavformat-dev libavcodec-dev libavutil-dev libswscale-dev libjpeg-dev libjpeg-turbo-progs
  libsndfile1-dev libpulse-dev libgtest-dev valgrind ffmpeg libpq-dev postgresql-15 mpv libxdamage-dev
  libgstrtspserver-1.0-dev libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev gstreamer1.0-plugins-base
  gstreamer1.0-plugins-good gstreamer1.0-plugins-ugly gstreamer1.0-plugins-bad
  clang libclang-rt-14-dev
  ccache xvfb xauth fonts-wqy-microhei fonts-urw-base35 pulseaudio pulseaudio-utils poppler-utils
)
missing=()
for p in "${PKGS[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y --no-install-recommends "${missing[@]}"
