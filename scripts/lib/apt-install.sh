# Sourced by the set-up scripts: apt_install PACKAGE... installs those not yet
# installed (nothing is fetched when all are present).
apt_install() {
  local missing=() p
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  ((${#missing[@]})) || return 0
  echo "setup: installing ${missing[*]}"
  local sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  "${sudo_cmd[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get -o DPkg::Lock::Timeout=900 install -y -qq "${missing[@]}"
}
