# Sourced by the set-up scripts that add a Debian source: sudo_cmd, and
# add_debian_source FILE SED, which writes FILE from the machine's own first Debian
# source stanza rewritten by the sed expression SED, so that no mirror is named here.
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
add_debian_source() {
  # The first stanza: up to the first blank line.
  awk 'BEGIN{RS=""} NR==1{print; exit}' /etc/apt/sources.list.d/debian.sources | sed -E "$2" |
    "${sudo_cmd[@]}" tee "$1" >/dev/null
}
