# Sourced by the commands at the top of the tree: installs what they need on a Debian system.
# Says nothing on standard output and reads no standard input.

missing_packages=()

# need_program NAME PACKAGE
need_program() {
  command -v "$1" >/dev/null 2>&1 || missing_packages+=("$2")
}

# need_header HEADER PACKAGE: to be called when there is a compiler.
need_header() {
  echo "#include <$1>" | g++ -std=c++20 -E -x c++ - >/dev/null 2>&1 || missing_packages+=("$2")
}

# What reads compressed collections of games; when there is a compiler.
need_compression() {
  need_header zlib.h zlib1g-dev
  need_header zstd.h libzstd-dev
  need_header bzlib.h libbz2-dev
}

# Installs the packages found missing; when that is not possible, says which and fails.
install_missing() {
  [ "${#missing_packages[@]}" -eq 0 ] && return 0
  local as_root=() log
  [ "$(id -u)" -eq 0 ] || as_root=(sudo -n)
  echo "installing: ${missing_packages[*]}" >&2
  log=$(mktemp)
  if ! {
    command -v apt-get &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing_packages[@]}"
  } </dev/null >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    echo "Could not install these packages; please install them: ${missing_packages[*]}" >&2
    return 1
  fi
  rm -f "$log"
  missing_packages=()
}

# find_wine PRESET: Wine's program that runs what was built with windows64 or windows32; nothing when
# there is none.
find_wine() {
  local names=(wine64 /usr/lib/wine/wine64)
  [ "$1" = windows64 ] || names=(/usr/lib/wine/wine)
  command -v "${names[@]}" | head -n 1
}

find_wineserver() {
  command -v wineserver /usr/lib/wine/wineserver | head -n 1
}
