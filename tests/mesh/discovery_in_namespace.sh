#!/usr/bin/env bash
# Publishes the desk's services inside a private network namespace and looks for them with
# avahi-browse. Multicast DNS never leaves the namespace: the veth pair has both ends inside it,
# the D-Bus system bus is a private socket in a temporary folder, and avahi-daemon is told to use
# only those two interfaces. Everything started here is stopped on exit, success or failure.
# Usage: discovery_in_namespace.sh QUILLON_BINARY
set -u
quillon=$1
ns="quillon-mesh-$$"
work=$(mktemp -d)
pids=()

cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
    [ -f "$work/dbus.pid" ] && kill "$(cat "$work/dbus.pid")" 2>/dev/null
    sleep 0.2
    for pid in "${pids[@]}"; do kill -9 "$pid" 2>/dev/null; done
    ip netns del "$ns" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

set -e
ip netns add "$ns"
inside() { ip netns exec "$ns" "$@"; }
inside ip link set lo up
inside ip link add qlnveth0 type veth peer name qlnveth1
inside ip addr add 10.213.77.1/24 dev qlnveth0
inside ip addr add 10.213.77.2/24 dev qlnveth1
inside ip link set qlnveth0 up
inside ip link set qlnveth1 up

cat >"$work/dbus.conf" <<CONF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=$work/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
CONF
inside dbus-daemon --config-file="$work/dbus.conf" --fork --print-pid >"$work/dbus.pid"
export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$work/bus"
for _ in $(seq 50); do [ -S "$work/bus" ] && break; sleep 0.1; done

cat >"$work/avahi.conf" <<CONF
[server]
allow-interfaces=qlnveth0,qlnveth1
use-ipv4=yes
use-ipv6=no
enable-dbus=yes
ratelimit-interval-usec=1000000
ratelimit-burst=1000
[wide-area]
enable-wide-area=no
[publish]
publish-hinfo=no
publish-workstation=no
[reflector]
enable-reflector=no
CONF
mkdir -p /run/avahi-daemon
inside avahi-daemon -f "$work/avahi.conf" --no-drop-root --no-chroot --no-rlimits >"$work/avahi.log" 2>&1 &
pids+=($!)
for _ in $(seq 50); do inside avahi-browse -pt _nothing._tcp >/dev/null 2>&1 && break; sleep 0.2; done

mkdir -p "$work/config" "$work/data" "$work/state"
mkfifo "$work/commands"
XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_STATE_HOME="$work/state" \
    ip netns exec "$ns" "$quillon" mesh serve <"$work/commands" >"$work/serve.out" 2>&1 &
pids+=($!)
exec 3>"$work/commands" # keep the desk's stdin open until cleanup

set +e
for _ in $(seq 40); do
    found=$(inside avahi-browse -rpt _vantalink._tcp 2>/dev/null)
    if echo "$found" | grep -q '^=.*;Quillon;_vantalink._tcp;'; then
        echo "$found"
        exit 0
    fi
    sleep 0.5
done
echo "avahi-browse did not see Quillon. Last answer:"; echo "$found"
echo "--- desk"; cat "$work/serve.out"; echo "--- avahi"; cat "$work/avahi.log"
exit 1
