#!/usr/bin/env bash
# Installs KiCad 9 and its demo boards from Debian's bookworm-backports; the
# importer tests export real boards with kicad-cli and ask KiCad's Python module
# what they hold. The backports source is made from the machine's own first Debian
# source stanza, so no mirror is named here.
set -euo pipefail
if command -v kicad-cli >/dev/null 2>&1 && [ -d /usr/share/kicad/demos ] && /usr/bin/python3 -c 'import pcbnew' 2>/dev/null; then
  exit 0
fi
. "$(dirname "$0")/apt-sources.sh"
if ! grep -rqs 'bookworm-backports' /etc/apt/sources.list /etc/apt/sources.list.d/; then
  add_debian_source /etc/apt/sources.list.d/kpcb-backports.sources 's/^Suites:.*/Suites: bookworm-backports/'
fi
"${sudo_cmd[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq -t bookworm-backports --no-install-recommends kicad kicad-demos
