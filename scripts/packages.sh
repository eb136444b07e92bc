# Sourced by the scripts here: need PACKAGE... installs the Debian packages that are missing.
need() {
  missing=
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing="$missing $package"
  done
  [ -n "$missing" ] || return 0
  echo "Installing:$missing"
  sudo=
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  $sudo apt-get update -qq
  # shellcheck disable=SC2086 # a list of words
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

need_build() { need g++ cmake ninja-build pkg-config libcli11-dev libcurl4-openssl-dev libgtest-dev; }
need_sandbox() { need python3 python3-cram iproute2 procps locales; }
