#!/usr/bin/env bash
# One shop's computer: this machine's programs, with files of its own on top that last as long as it
# runs, and an SSH server. To be started in the shop's network, as the first process of namespaces for
# mounts, processes and names; whoever ends it ends all that runs in the shop.
#
#   shop-computer.sh <name> <folder> <public key>
#
# The folder's "srv" is /srv/shop in there. Its subfolder "computer" is where the files are mounted.

set -euo pipefail
name=$1 folder=$2 key=$3
here=$folder/computer
root=$here/root

mkdir -p "$here"
mount -t tmpfs tmpfs "$here"
mkdir "$here/upper" "$here/work" "$root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$here/upper,workdir=$here/work" "$root"
mount --rbind /dev "$root/dev"
mount -t proc proc "$root/proc"
mount -t tmpfs tmpfs "$root/run"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mkdir -p "$root/srv/shop" "$root/root/.ssh" "$root/etc/dropbear"
mount --bind "$folder/srv" "$root/srv/shop"
hostname "$name"
cp "$key" "$root/root/.ssh/authorized_keys"
chmod 700 "$root/root" "$root/root/.ssh"
# What this machine's people have made for themselves.
rm -f "$root/root/.bashrc" "$root/root/.profile"
# No service manager runs here: systemctl only writes links.
exec chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 SYSTEMD_OFFLINE=1 \
    dropbear -F -E -R -e -s -p 22
