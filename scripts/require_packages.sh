# require_packages <debian packages...>: installs the missing ones with apt when
# run as root, otherwise names them and fails.
require_packages() {
  local missing=()
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -eq 0 ]; then
    echo "installing: ${missing[*]}"
    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}"
  else
    echo "missing Debian packages: ${missing[*]} (run as root or install them)" >&2
    return 1
  fi
}
