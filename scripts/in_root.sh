#!/bin/sh
# in_root.sh ROOT COMMAND...: runs COMMAND with the folder ROOT as its whole file system. A changed root of the usual kind
# (chroot) forbids private namespaces. To be run as root of a mount namespace, or of a user namespace. ROOT needs umount.
set -eu
# shellcheck disable=SC2016
exec unshare --mount sh -euc '
  mount --rbind "$0" "$0"
  cd "$0"
  pivot_root . mnt
  cd /
  umount --lazy /mnt
  exec "$@"' "$@"
