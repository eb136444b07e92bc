#!/bin/sh
# sandbox.sh [--own-network] COMMAND...: runs a command in a private root. Its installation
# directory, init scripts, /zrcommon.log, /dev and /scratch are private and empty; everything else
# is the machine's, which is whole under /host. The command is root there, with the rights of the
# user who called. With --own-network it has loopback only. Exit status 125: this was not possible.
set -eu
refuse() {
  echo "sandbox: $1. Allow user namespaces with 'sysctl kernel.unprivileged_userns_clone=1' (where" \
    "this setting exists) and 'sysctl user.max_user_namespaces=10000'; in a container, permit" \
    "unshare and mount." >&2
  exit 125
}
PATH=$PATH:/usr/sbin:/sbin
if [ "${1:-}" != --inside ]; then
  network=''
  [ "${1:-}" != --own-network ] || { network=--net; shift; }
  for user in '--user --map-root-user' ''; do
    # shellcheck disable=SC2086 # several options, or none
    unshare $user --mount $network true 2>/dev/null || continue
    # shellcheck disable=SC2086
    exec unshare $user --mount $network sh "$0" --inside "$network" "$@"
  done
  refuse "namespaces are refused"
fi
network=$2
shift 2
directory=$PWD
# In another sandbox, the machine is under its /host, and /scratch stays.
machine=${ZRCOMMON_SANDBOX:+/host}
trap 'refuse "the private root could not be made"' EXIT

mount -t tmpfs -o mode=755 sandbox /mnt
mkdir /mnt/host
mount --rbind "${machine:-/}" /mnt/host
# Directories are mounted, so that they keep their names. Those with private parts are made of links.
for path in /* /usr/*; do
  case $path in
    /dev | /etc | /host | /mnt | /usr | /usr/lib | /zrcommon.log) continue ;;
    /scratch) [ -n "$machine" ] || continue ;;
  esac
  mkdir -p /mnt/usr
  if [ -L "$path" ]; then
    cp -P "$path" "/mnt$path"
  elif [ ! -d "$path" ]; then
    ln -s "/host$path" "/mnt$path"
  else
    mkdir "/mnt$path"
    mount --rbind "$path" "/mnt$path"
  fi
done
for path in /usr/lib /etc; do
  mkdir "/mnt$path"
  find "$path" -mindepth 1 -maxdepth 1 -printf '/host%p\0' | xargs -0 ln -s -t "/mnt$path"
done
ln -s /host/mnt /mnt/mnt
cd /mnt
rm -f usr/lib/Valdrix etc/init.d
mkdir -p scratch usr/lib/Valdrix/Valdrix etc/init.d/rc.d dev/shm

# Private nodes: several operations change the mode of what they are given, or delete it.
for device in full null random tty urandom zero; do
  [ -e /dev/$device ] || continue
  : > dev/$device
  mount -o bind,ro /dev/$device dev/$device
done
for link in fd stdin stdout stderr; do ln -s "/host/dev/$link" dev/$link; done
ln -s /host/dev/pts /host/dev/ptmx dev
[ -z "$network" ] || ip link set lo up
trap - EXIT
# shellcheck disable=SC2016 # for the inner shell
ZRCOMMON_SANDBOX=1 exec chroot /mnt sh -c 'cd "$0" 2>/dev/null || cd "/host$0"; exec "$@"' \
  "$directory" "$@"
