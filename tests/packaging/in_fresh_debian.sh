#!/bin/sh
# in_fresh_debian.sh: run as root in a fresh Debian, with the packages in /packages: they install, their programs work for
# an ordinary user, Python and Lua find their modules, pkg-config the libraries, and nothing is left when they go.
set -eu
export DEBIAN_FRONTEND=noninteractive
cd /packages

apt-get install --yes --no-install-recommends ./tembra-*.deb ./lib*.deb
setpriv --reuid=1000 --regid=1000 --clear-groups --bounding-set=-all --inh-caps=-all ./demo

apt-get install --yes --no-install-recommends ./python3-*.deb ./lua-*.deb lua5.1 lua5.4 pkgconf
[ "$(python3 -c 'import tembra; print(tembra.type_name(1))')" = BinarySwitch ]
for lua in lua5.1 lua5.4; do
  [ "$($lua -e 'print(require("tembra").type_name(1))')" = BinarySwitch ]
done
for package in tembra-assoc tembra-frontend tembra-platform; do
  for flag in $(pkg-config --libs-only-l $package); do
    [ -e "/usr/lib/$(uname -m)-linux-gnu/lib${flag#-l}.so" ] || { echo "no library for $flag" >&2; exit 1; }
  done
done

# shellcheck disable=SC2046
apt-get purge --yes $(dpkg-query --show --showformat '${Package} ${Source}\n' | sed -n 's/ .*tembra.*//p')
left=$(find / -xdev -iname '*tembra*' ! -path '/packages/*' ! -path '/var/lib/apt/*')
[ -z "$left" ] || { echo "left behind: $left" >&2; exit 1; }
