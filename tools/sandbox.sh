#!/usr/bin/env bash
# Runs a command inside the project's test sandbox: private mount, IPC, PID, UTS and network
# namespaces with a private /dev (null, zero, urandom, tty, its own devpts and ptmx), empty files
# at /dev/ttyS0, /dev/ttyS1 and /dev/ttyS4 onto which the test side binds pseudo-terminal slaves,
# tmpfs on /tmp, /mnt, /mnt/pos, /mnt/doc, /opt and /opt/app, the FIFO /tmp/pos_fifo, a stand-in
# /opt/app/add_inetd that records its arguments in /tmp/add_inetd.log, and loopback up.
# The real serial ports of the host are never reachable from inside.
#
#   tools/sandbox.sh COMMAND [ARGS...]
#
# The command runs as a child of the sandbox's init (PID 1), so that a process it starts does not
# see getppid() == 1 while its parent lives.
set -euo pipefail

if [ "${1:-}" != "--inside" ]; then
  if [ "$(id -u)" != 0 ]; then
    echo "sandbox.sh: needs root (namespaces and mounts)" >&2
    exit 2
  fi
  [ $# -ge 1 ] || { echo "usage: sandbox.sh COMMAND [ARGS...]" >&2; exit 2; }
  exec unshare --mount --ipc --pid --net --uts --kill-child --mount-proc --propagation private \
    "$(readlink -f "$0")" --inside "$(pwd)" "$@"
fi
shift
workdir=$1
shift

# Paths under /tmp that the command needs (the checkout, the working directory, the program)
# are bound back after the fresh /tmp is mounted.
keep=()
for p in "$(dirname "$(readlink -f "$0")")/.." "$workdir" "$(dirname "$(readlink -f "$(command -v "$1" || echo "$1")")")"; do
  p=$(readlink -f "$p" 2>/dev/null || true)
  case "$p" in /tmp/?*) keep+=("$p") ;; esac
done

mount -t tmpfs -o mode=0755 sandbox-dev /dev
mknod -m 666 /dev/null c 1 3
mknod -m 666 /dev/zero c 1 5
mknod -m 666 /dev/urandom c 1 9
mknod -m 666 /dev/random c 1 8
mknod -m 666 /dev/tty c 5 0
ln -s /proc/self/fd /dev/fd
ln -s /proc/self/fd/0 /dev/stdin
ln -s /proc/self/fd/1 /dev/stdout
ln -s /proc/self/fd/2 /dev/stderr
mkdir /dev/pts /dev/shm /dev/.oldtmp
mount -t devpts -o newinstance,ptmxmode=0666,mode=0620 devpts /dev/pts
ln -s pts/ptmx /dev/ptmx
mount -t tmpfs tmpfs /dev/shm
touch /dev/ttyS0 /dev/ttyS1 /dev/ttyS4
touch /dev/.ptz-sandbox

mount --bind /tmp /dev/.oldtmp
mount -t tmpfs -o mode=1777 sandbox-tmp /tmp
for p in "${keep[@]}"; do
  mkdir -p "$p"
  mount --bind "/dev/.oldtmp/${p#/tmp/}" "$p"
done
mkfifo -m 0666 /tmp/pos_fifo

# /mnt and /opt are covered first so that nothing is created on the host's file system.
mount -t tmpfs sandbox-mnt /mnt
mount -t tmpfs sandbox-opt /opt
mkdir -p /mnt/pos /mnt/doc /opt/app
mount -t tmpfs sandbox-pos /mnt/pos
mount -t tmpfs sandbox-doc /mnt/doc
mount -t tmpfs sandbox-app /opt/app
cat > /opt/app/add_inetd <<'STANDIN'
#!/bin/sh
# Stand-in for the platform's service registration: records its arguments, one call a line.
printf '%s\n' "$*" >> /tmp/add_inetd.log
STANDIN
chmod 755 /opt/app/add_inetd

ip link set lo up 2>/dev/null || true
hostname ptz-sandbox

set +e
"$@"
rc=$?
exit $rc
