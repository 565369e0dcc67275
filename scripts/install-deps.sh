#!/usr/bin/env bash
# Installs the Debian packages that optdesk needs, only those that are missing.
# Runs as root, or through sudo.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config ccache
  qtbase5-dev qtwebengine5-dev libqt5svg5-dev
  libboost-dev libboost-thread-dev libboost-system-dev
  libmongoclient-dev libfmt-dev liblog4cxx-dev
  libgtest-dev libgmock-dev libbenchmark-dev libquantlib0-dev libsqlite3-dev
  xvfb xauth fonts-noto-cjk
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

# The chart pages' ECharts comes from npm at build time. Debian ships npm apart
# from nodejs; a nodejs that brings its own npm (NodeSource) needs neither.
if ! command -v npm >/dev/null 2>&1; then
  for p in nodejs npm; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$p")
    fi
  done
fi

if [ ${#missing[@]} -eq 0 ]; then
  echo "deps: all ${#packages[@]} packages present"
  exit 0
fi

echo "deps: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null 2>&1; then
    sudo="sudo"
  else
    echo "deps: not root and no sudo; install these packages first: ${missing[*]}" >&2
    exit 1
  fi
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y --no-install-recommends "${missing[@]}"
