#!/usr/bin/env bash
# usage: in_foreign.sh CPU ROOT COMMAND [ARG...]: runs a command where programs of another CPU (armhf, arm64, mipsel) start
# by themselves, with an emulator and the libraries of the folder ROOT. Nothing outside notices. i386 needs no emulator.
#
# The kernel has to keep its table of emulators per user namespace (Linux 6.7). On an older one, register the emulators
# for the machine (Debian's package qemu-user-binfmt) and set TEMBRA_EMULATORS=registered.
set -euo pipefail

cpu=$1
root=$2
shift 2

case $cpu in
  i386) emulator="" triplet=i386-linux-gnu ;;
  armhf) emulator=qemu-arm-static triplet=arm-linux-gnueabihf class=1 machine=28 ;;
  arm64) emulator=qemu-aarch64-static triplet=aarch64-linux-gnu class=2 machine=b7 ;;
  mipsel) emulator=qemu-mipsel-static triplet=mipsel-linux-gnu class=1 machine=08 ;;
  *) echo "$0: no CPU \"$cpu\"" >&2 && exit 2 ;;
esac

if [[ -z $emulator ]]; then
  export LD_LIBRARY_PATH=$root/usr/lib:$root/usr/lib/$triplet:$root/lib/$triplet
  exec "$@"
fi
export QEMU_LD_PREFIX=$root
[[ ${TEMBRA_EMULATORS-} != registered ]] || exec "$@"

# A little-endian program of that class and machine, executable or shared.
magic='\x7fELF\x0'$class'\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x'$machine'\x00'
mask='\xff\xff\xff\xff\xff\xff\xff\x00\x00\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff'
line=":$cpu:M::$magic:$mask:$(command -v "$emulator"):F"
# shellcheck disable=SC2016
exec unshare --user --map-root-user --mount bash -c '
  mount -t binfmt_misc none /proc/sys/fs/binfmt_misc
  printf "%s" "$1" >/proc/sys/fs/binfmt_misc/register
  shift
  exec "$@"' - "$line" "$@"
