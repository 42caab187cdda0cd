#!/usr/bin/env bash
# Installs the Debian packages Rainfold builds and is tested with, when any is missing, then
# configures and builds the project in build/. Sourced by tools/run, tools/test and tools/package.
set -euo pipefail

RAINFOLD_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
RAINFOLD_BUILD="${RAINFOLD_BUILD:-$RAINFOLD_ROOT/build}"
RAINFOLD_JOBS="${RAINFOLD_JOBS:-$(nproc)}"

packages=(cmake g++ make qt6-base-dev qt6-charts-dev libgl-dev libgtest-dev libbenchmark-dev
          xvfb xauth python3 poppler-utils fonts-dejavu-core fonts-liberation
          libqt6opengl6-dev libcli11-dev nlohmann-json3-dev locales
          g++-mingw-w64-x86-64-posix wine wine64
          desktop-file-utils appstream lintian dpkg-dev shared-mime-info)

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}"
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends \
        "${missing[@]}"
fi

# The tests run the program under a German locale too, whose decimal mark is a comma.
if ! locale -a 2>/dev/null | grep -qix 'de_DE.utf-\?8'; then
    echo "Generating the de_DE.UTF-8 locale"
    "${sudo_cmd[@]}" localedef -i de_DE -f UTF-8 de_DE.UTF-8
fi

# RAINFOLD_SETUP_BUILD=0: install only (tools/package builds its own way).
if [ "${RAINFOLD_SETUP_BUILD:-1}" = 1 ]; then
    cmake -S "$RAINFOLD_ROOT" -B "$RAINFOLD_BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
    cmake --build "$RAINFOLD_BUILD" -j "$RAINFOLD_JOBS"
fi
