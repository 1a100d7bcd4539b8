#!/usr/bin/env bash
# usage: cross_root.sh CPU FOLDER: lays the libraries of another of Debian's CPUs (i386, armhf, arm64, mipsel) that
# building and testing takes into the folder. Installs nothing, needs no root, changes nothing of this machine's Debian.
# (They cannot be installed side by side: Debian's Depot library is not made for that.)
set -euo pipefail

cpu=$1
folder=$2
packages=(libqdbm14 libqdbm-dev zlib1g zlib1g-dev libgtest-dev libcli11-dev libjsmn-dev nlohmann-json3-dev libc6 libgcc-s1
  libstdc++6)

work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work"/{lists,cache,debs} "$folder"

# A package manager's state of its own, which knows the other CPU only.
apt=(-o "APT::Architecture=$cpu" -o "APT::Architectures=$cpu" -o "Dir::State::lists=$work/lists"
  -o "Dir::Cache=$work/cache" -o Dir::State::status=/dev/null -o APT::Sandbox::User=root -o Debug::NoLocking=true)
apt-get --quiet=2 "${apt[@]}" update || echo "$0: some package lists are missing; the download will tell whether they matter" >&2
(cd "$work/debs" && apt-get --quiet=2 "${apt[@]}" download "${packages[@]}")
for package in "$work"/debs/*.deb; do
  dpkg --extract "$package" "$folder"
done
