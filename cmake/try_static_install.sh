#!/usr/bin/env bash
# Installs the static library of BUILD and builds a host against it, by its CMake package and by pkg-config, with the
# resources beside it: try_static_install.sh BUILD. The fuzzers' tree has one, so the host is built as they are.
set -euo pipefail
root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build=$(cd -- "$1" && pwd)
scratch=$build/StaticInstall host=$root/Examples/Installed/Colour said='navy #000080'
export CXX=clang++-14 CXXFLAGS=-fsanitize=address,undefined

rm -rf "$scratch"
cmake --install "$build" --prefix "$scratch/installed" >/dev/null
cmake -S "$host" -B "$scratch/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/installed" >/dev/null
cmake --build "$scratch/cmake"
mkdir "$scratch/pkg-config"
export PKG_CONFIG_PATH=$scratch/installed/lib/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs KelvaneFoundation)"
"$CXX" "$CXXFLAGS" -std=c++20 "$host/main.cpp" "${flags[@]}" -o "$scratch/pkg-config/Colour"
for way in cmake pkg-config; do
  cp -R "$scratch/installed/share/KelvaneFoundation" "$scratch/$way/Resources"
  answer=$("$scratch/$way/Colour")
  [[ $answer == "$said" ]] || { printf '%s: it said %s\n' "$way" "$answer" >&2; exit 1; }
done
