# shellcheck shell=bash
# Shell functions of ./play, ./check and the other scripts: what they need, whether it is there, and
# getting it.
# Sourced, with `me` set to the name that messages begin with. Messages go to standard error.

# shellcheck disable=SC2154  # me: set by the script that sources this
say() { printf '%s: %s\n' "$me" "$*" >&2; }
give_up() { say "$*"; exit 1; }

# present PACKAGE: whether what the Debian package provides is on this machine, from wherever it
# came.
present() {
  case $1 in
    g++)                  command -v c++ ;;
    ninja-build)          command -v ninja ;;
    procps)               command -v ps ;;
    dpkg-dev)             command -v dpkg-shlibdeps ;;
    nodejs)               command -v node ;;
    xvfb)                 command -v xvfb-run ;;
    chromium-driver)      command -v chromedriver ;;
    xboard | fairymax | pgn-extract | polyglot | stockfish)
                          command -v "$1" || test -x "/usr/games/$1" ;;
    libgtest-dev)         has_header gtest/gtest.h ;;
    libcli11-dev)         has_header CLI/CLI.hpp ;;
    libbenchmark-dev)     has_header benchmark/benchmark.h ;;
    libclang-rt-dev)      has_libfuzzer ;;
    python3-pytest)       python3 -c 'import pytest' || /usr/bin/python3 -c 'import pytest' ;;
    *)                    command -v "$1" ;;
  esac >/dev/null 2>&1
}

has_header() { printf '#include <%s>\n' "$1" | c++ -std=c++20 -E -x c++ - ; }

has_libfuzzer() {
  printf 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }\n' |
    clang++ -fsanitize=fuzzer,address -x c++ - -o /dev/null
}

# missing PACKAGE...: prints those that are not there.
missing() {
  local package
  for package; do
    present "$package" || printf '%s ' "$package"
  done
}

# install PACKAGE...: installs them without a question; when that cannot be done, one line says why.
install() {
  local root=(env DEBIAN_FRONTEND=noninteractive)
  if ! command -v apt-get >/dev/null; then
    say "no apt-get on this system; install by hand what these Debian packages hold: $*"
    return 1
  fi
  if [ "$(id -u)" != 0 ]; then
    root=(sudo -n "${root[@]}")
    if ! sudo -n true 2>/dev/null; then
      say "not root, and sudo is not there or wants a password; run as root: apt-get install $*"
      return 1
    fi
  fi
  say "installing: $*"
  if ! "${root[@]}" apt-get -qq update >&2 ||
    ! "${root[@]}" apt-get -qq -y --no-install-recommends -o Dpkg::Use-Pty=0 install "$@" \
      >&2 </dev/null; then
    say "apt-get could not install: $*"
    return 1
  fi
}

# need PACKAGE...: installs what is missing of these, or ends the script.
need() {
  local absent
  absent=$(missing "$@")
  # shellcheck disable=SC2086  # one word per package
  [ -z "$absent" ] || install $absent || exit 1
}

# want PACKAGE...: as need, but goes on without them; an error all the same where nothing may be
# skipped.
want() {
  local absent package
  absent=$(missing "$@")
  [ -n "$absent" ] || return 0
  # shellcheck disable=SC2086
  install $absent || {
    [ "${CI:-}" != true ] || exit 1
    for package in $absent; do
      present "$package" || say "skipped: $package is not installed, tests that need it do not run"
    done
  }
}
