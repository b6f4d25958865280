# shellcheck shell=bash
# Sourced by ./run and ./test: finds what a build needs and installs what is missing.
#
#   have_header NAME       true when the compiler finds <NAME>
#   install PACKAGE...     Debian packages, quietly; ends the script with clear words when it cannot
#   offer WHAT PACKAGE...  the same for what can be done without: says so and goes on when it cannot
#   offer_libraries        the libraries for the files of other programs
#   configure_and_build PRESET   one configuration of CMakePresets.json, from scratch or brought up to date;
#                                called in the top folder of the project
#
# Nothing here reads standard input, and nothing but apt uses the network.  All words go to
# standard error: standard output belongs to the program.

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

have() { command -v "$1" >/dev/null 2>&1; }

have_header() {
  printf '#include <%s>\n' "$1" | g++ -std=c++20 -E -x c++ - >/dev/null 2>&1
}

# Runs a command as root: directly, or through sudo where that asks for no password.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    sudo -n "$@"
  fi
}

# True when all packages are there; else the reason is told in one line.
try_install() {
  if ! have apt-get; then
    say "please install: $* (this machine has no apt-get, so it cannot be done here)"
    return 1
  fi
  if [ "$(id -u)" -ne 0 ] && ! { have sudo && sudo -n true 2>/dev/null; }; then
    say "please run as root: apt-get install $* (this user is not root and has no free sudo)"
    return 1
  fi
  say "installing $*"
  local log
  log=$(mktemp)
  local -a apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300)
  # The lists of a fresh machine are empty or old: the first attempt may fail for that alone.
  if as_root "${apt[@]}" install --no-install-recommends "$@" </dev/null >"$log" 2>&1 ||
     { as_root "${apt[@]}" update </dev/null >>"$log" 2>&1 &&
       as_root "${apt[@]}" install --no-install-recommends "$@" </dev/null >>"$log" 2>&1; }; then
    rm -f "$log"
    return 0
  fi
  tail -n 15 "$log" >&2
  say "could not install $*; the last words of apt-get stand above, all of them in $log"
  return 1
}

install() { try_install "$@" || exit 1; }

offer() {
  local what=$1
  shift
  [ $# -eq 0 ] || try_install "$@" || say "going on without them: $what"
}

# Each stands behind one file of the program, which says at run time when it was built without.
offer_libraries() {
  local -a missing=()
  local pair
  for pair in xlsxwriter.h:libxlsxwriter-dev readstat.h:libreadstat-dev \
              rdata/rdata.h:librdata-dev zip.h:libzip-dev pugixml.hpp:libpugixml-dev \
              freexl.h:libfreexl-dev zlib.h:zlib1g-dev bzlib.h:libbz2-dev lzma.h:liblzma-dev; do
    have_header "${pair%%:*}" || missing+=("${pair#*:}")
  done
  offer "files of spreadsheets and statistics packages will be missing" ${missing[@]+"${missing[@]}"}
}

install_build_tools() {
  local -a missing=()
  have g++ || missing+=(g++)
  have cmake || missing+=(cmake)
  have ninja || missing+=(ninja-build)
  [ ${#missing[@]} -eq 0 ] || install "${missing[@]}"
}

# ccache is used where it is and works: without a folder that it may write it fails every compilation.
ccache_works() {
  local object
  have ccache && object=$(mktemp) || return 1
  ccache g++ -x c++ -c /dev/null -o "$object" >/dev/null 2>&1
  local works=$?
  rm -f "$object"
  return "$works"
}

configure_and_build() {
  local preset=$1 folder
  case $preset in release) folder=build/run ;; *) folder=build/test ;; esac
  local -a options=(--preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER=)
  ccache_works && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  # A build folder that was copied or moved with the project still speaks of its former place.
  if [ -e "$folder/CMakeCache.txt" ] &&
     ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
    options+=(--fresh)
  fi
  cmake "${options[@]}" </dev/null &&
    cmake --build --preset "$preset" -j "$(nproc)" </dev/null
}
