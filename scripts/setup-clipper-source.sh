#!/usr/bin/env bash
# The Windows cross build compiles the Clipper library from the sources of Debian's
# polyclipping package (Debian ships it built for the host only). Unpacks them into
# /usr/local/src/kpcb-polyclipping, once.
set -euo pipefail
dest=/usr/local/src/kpcb-polyclipping
[ -f "$dest/cpp/clipper.cpp" ] && exit 0
. "$(dirname "$0")/apt-sources.sh"
if ! grep -rqs '^Types:.*deb-src\|^deb-src' /etc/apt/sources.list /etc/apt/sources.list.d/; then
  add_debian_source /etc/apt/sources.list.d/kpcb-sources.sources 's/^Types:.*/Types: deb-src/'
fi
"${sudo_cmd[@]}" apt-get -o DPkg::Lock::Timeout=900 update -qq
work=$(mktemp -d)
chmod 755 "$work"  # apt fetches as its own user
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get source -qq libpolyclipping >/dev/null)
"${sudo_cmd[@]}" mkdir -p "$dest"
"${sudo_cmd[@]}" cp -r "$work"/libpolyclipping-*/. "$dest"/
