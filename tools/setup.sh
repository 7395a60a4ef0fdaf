# Sourced by the scripts of the checkout. Needs bash.

# The console program and what it runs.
console_packages=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libedit-dev gnuplot-nox)

# need_packages PACKAGE...: installs those Debian packages that are missing; messages go to standard error. What stops it
# is its last line, which names the command that mends it. On another system the tools are taken as they are.
need_packages() {
  local installed missing=() package tool
  if ! command -v dpkg-query >/dev/null; then
    for tool in g++ cmake ninja; do
      command -v "$tool" >/dev/null || missing+=("$tool")
    done
    if [ ${#missing[@]} != 0 ]; then
      echo "packages are missing: install ${missing[*]}, and what Debian calls $*" >&2
      return 1
    fi
    return 0
  fi
  installed=" $(dpkg-query -W -f '${Package}:${db:Status-Status} ' "$@" 2>/dev/null || true)"
  for package in "$@"; do
    case "$installed" in
      *" $package:installed "*) ;;
      *) missing+=("$package") ;;
    esac
  done
  if [ ${#missing[@]} = 0 ]; then
    return 0
  fi

  local as_root=()
  if [ "$(id -u)" != 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "packages are missing, and there is no sudo; as root: apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "installing ${missing[*]}" >&2
  if ! { "${as_root[@]}" apt-get -q update >&2 </dev/null &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends install \
      "${missing[@]}" >&2 </dev/null; }; then
    echo "packages could not be installed (is there a network?); by hand: ${as_root[*]:+sudo }apt-get install ${missing[*]}" >&2
    return 1
  fi
}

# Recompiling what has not changed is not worth anyone's time where a compiler cache is at hand.
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
