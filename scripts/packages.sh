# Sourced by the scripts.

# help_asked "$@": prints the comment at the head of the script if --help is the first argument.
help_asked() {
  case ${1:-} in --help | -h) sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" ;; *) return 1 ;; esac
}

# refuse MESSAGE: ends a script that was called wrongly.
refuse() {
  echo "$(basename "$0"): $1; see $0 --help" >&2
  exit 2
}

# no_arguments "$@": for a script that takes none but --help.
no_arguments() {
  if help_asked "$@"; then exit 0; fi
  [ $# -eq 0 ] || refuse "unexpected argument \"$1\""
}

# need PACKAGE...: installs the Debian packages that are missing.
need() {
  missing=
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing="$missing $package"
  done
  [ -n "$missing" ] || return 0
  echo "Installing:$missing"
  as_root apt-get update -qq
  # shellcheck disable=SC2086 # a list of words
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    $missing >/dev/null
}

as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

need_build() {
  need g++ cmake ninja-build pkg-config libcli11-dev nlohmann-json3-dev libcurl4-openssl-dev libgtest-dev
}

need_sandbox() { need iproute2 procps locales python3 python3-cram; }
