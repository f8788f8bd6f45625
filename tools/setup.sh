# Sourced by the commands at the root: what they need of the system.

# need_packages NAME...: installs the Debian packages that are missing, or says what to install. Does nothing where
# VELLUM_NO_SETUP is set, for systems that bring the same by other means.
need_packages() {
  local missing=() package
  [ -n "${VELLUM_NO_SETUP:-}" ] && return 0
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ "${#missing[@]}" -eq 0 ] && return 0
  if ! command -v apt-get >/dev/null; then
    printf 'This needs what Debian calls: %s. Install its like here and set VELLUM_NO_SETUP=1.\n' "${missing[*]}" >&2
    return 1
  fi
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  printf 'Installing %s\n' "${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# quietly COMMAND...: shows the output of a command only when it fails.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
