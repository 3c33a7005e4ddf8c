# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the scripts share. Source it first: it goes to the root of the project.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit
# shellcheck disable=SC2034
jobs=$(nproc)
# shellcheck disable=SC2034
servicesData=${XDG_DATA_HOME:-$HOME/.local/share}/vek-services

# say TEXT...: a line about what is being done, on standard error like all progress.
say() { printf '%s\n' "$*" >&2; }

# fail TEXT...: the reason, and the end.
fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# helpIfAsked "$@": prints the comment at the head of the calling script for --help and -h.
helpIfAsked() {
  case "${1:-}" in
    -h | --help)
      sed -n '3,/^[^#]/ s/^# \{0,1\}//p' "$root/scripts/$(basename "$0")"
      exit 0
      ;;
  esac
}

# build PRESET [TARGET...]: configures and builds one preset.
build() {
  local preset=$1
  shift
  cmake --preset "$preset" >"$root/build/.configure.log" 2>&1 || {
    cat "$root/build/.configure.log" >&2
    return 1
  }
  ninja -C "build/$preset" -j "$jobs" "$@"
}

mkdir -p "$root/build"
