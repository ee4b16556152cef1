#!/usr/bin/env bash
# Run as root on a bare Debian 12, with the packages of `./kelvane package` in the folder FOLDER: try_packages.sh FOLDER
#
# Installs them as a user would, builds the hosts that the development files bring, each with CMake and with make, and
# takes the packages away again. The first host is built where there is no Qt.
set -euo pipefail
cd -- "$1"
examples=/usr/share/doc/libkelvanefoundation-dev/examples
export DEBIAN_FRONTEND=noninteractive QT_QPA_PLATFORM=offscreen

fail() {
  printf '%s\n' "$*" >&2
  exit 1
}

add() { apt-get install -y --no-install-recommends "$@"; }

# Whether a package that the pattern fits is there.
installed() { dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | grep -x installed >/dev/null; }

# expect SAID COMMAND...
expect() {
  local said
  said=$("${@:2}")
  [[ $said == "$1" ]] || fail "${*:2} said '$said' and not '$1'"
}

# try_host NAME SAID
try_host() {
  local build=/tmp/$1
  cmake -S "$examples/$1" -B "$build/cmake"
  cmake --build "$build/cmake"
  expect "$2" "$build/cmake/$1"
  mkdir -p "$build/make"
  make -C "$build/make" -f "$examples/$1/Makefile" VPATH="$examples/$1"
  expect "$2" "$build/make/$1"
}

apt-get update
add ./libkelvanefoundation-dev_*.deb ./libkelvanefoundation0.1_*.deb ./kelvanefoundation-data_*.deb g++ cmake make pkg-config
! installed 'libqt6*' || fail "Foundation's packages brought Qt along"
try_host Colour 'navy #000080'

add ./libkelvanefoundationqt-dev_*.deb ./libkelvanefoundationqt0.1_*.deb
try_host OnQt 'Qt 6'

add ./kelvane-notebook_*.deb
mkdir /tmp/notes
printf 'A note\n' >/tmp/notes/note.txt
kelvane-notebook --report /tmp/notes

apt-get purge -y 'libkelvanefoundation*' 'kelvanefoundation*' kelvane-notebook
left=$(find / -xdev -iname '*kelvane*' -not -path '/proc/*' -not -path "$PWD/*" -not -path '/tmp/*' -not -path '/root/*' -not -path '/var/lib/apt/*' -not -path '/var/cache/*')
[[ -z $left ]] || fail "left behind: $left"
