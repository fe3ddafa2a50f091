# shellcheck shell=bash
# Functions that run, test, bench and .ci/run share. Sourced by bash, from the root of the repository.
# They ask whether a command, a header or a library is there, never whether a package is: a machine may have
# its tools from elsewhere. What is missing is then installed from the packages of Debian 12.

missing_things=()
missing_packages=()

say() { printf '%s\n' "$*" >&2; }

die() {
  say "error: $*"
  exit 1
}

# need command|header|library|archive|llvm|postgresql NAME PACKAGE: remembers PACKAGE as missing unless NAME is there.
need() {
  "has_$1" "$2" && return
  missing_things+=("$1 $2")
  missing_packages+=("$3")
}

has_command() { command -v "$1" >/dev/null; }

has_header() {
  local places
  places="${CPATH-}:${CPLUS_INCLUDE_PATH-}:$(below_prefixes include):$(printf '%s:' /usr/include/*-linux-gnu)"
  has_file "/$1" "$places"
}

has_library() {
  local places
  places="${LIBRARY_PATH-}:$(below_prefixes lib):$(printf '%s:' /usr/lib/*-linux-gnu /usr/lib/clang/14*/lib/linux)"
  has_file "/lib$1.so" "$places" || has_file "/lib$1.a" "$places"
}

# A Java archive where Debian puts it.
has_archive() { has_file "/$1.jar" /usr/share/java; }

# A program of the server where Debian puts it.
has_postgresql() { compgen -G "/usr/lib/postgresql/*/bin/$1" >/dev/null; }

# A header of LLVM 14 where Debian puts it.
has_llvm() { [ -e "/usr/lib/llvm-14/include/$1" ]; }

# The folder of that name below each prefix that CMake searches, joined by colons.
below_prefixes() {
  local prefix prefixes
  IFS=';:' read -ra prefixes <<<"${CMAKE_PREFIX_PATH-}"
  for prefix in "${prefixes[@]}" /usr/local /usr; do printf '%s/%s:' "$prefix" "$1"; done
}

has_file() {
  local place places
  IFS=: read -ra places <<<"$2"
  for place in "${places[@]}"; do
    [ -n "$place" ] && [ -e "$place$1" ] && return
  done
  return 1
}

need_for_program() {
  local compiler=${CXX:-c++}
  need command "${compiler%% *}" g++
  need command cmake cmake
  need command ninja ninja-build
  need header expat.h libexpat1-dev
  need library expat libexpat1-dev
  need header utf8proc.h libutf8proc-dev
  need library utf8proc libutf8proc-dev
  need header CLI/CLI.hpp libcli11-dev
  need header fmt/format.h libfmt-dev
  need library fmt libfmt-dev
  need header nlohmann/json.hpp nlohmann-json3-dev
  need header sqlite3.h libsqlite3-dev
  need library sqlite3 libsqlite3-dev
  need header zlib.h zlib1g-dev
  need library z zlib1g-dev
  need header curl/curl.h libcurl4-openssl-dev
  need library curl libcurl4-openssl-dev
  need header re2/re2.h libre2-dev
  need library re2 libre2-dev
  need header yaml-cpp/yaml.h libyaml-cpp-dev
  need library yaml-cpp libyaml-cpp-dev
  need header zip.h libzip-dev
  need library zip libzip-dev
  # The importer of tabular definitions.
  need command javac openjdk-17-jdk-headless
  need command jar openjdk-17-jdk-headless
  need archive jackson-core libjackson2-core-java
  # The page of the report.
  need command node nodejs
  need command npm npm
}

# The package of Python, which is left out where these are missing and nobody asked for it.
need_for_python() {
  need header "python3.11/Python.h" python3-dev
  need header pybind11/pybind11.h pybind11-dev
}

need_for_tests() {
  need header gtest/gtest.h libgtest-dev
  need library gtest libgtest-dev
  need command xmllint libxml2-utils
  need command nm binutils
  need command dpkg-shlibdeps dpkg-dev
  need command file file
  need command parallel parallel
  need command sqlite3 sqlite3
  need command git git
  need command python3 python3
  need command chromium chromium
}

need_for_benchmarks() {
  need header benchmark/benchmark.h libbenchmark-dev
  need library benchmark libbenchmark-dev
  need command xmllint libxml2-utils
}

need_for_checks() {
  need command clang++-14 clang-14
  need command clang-format-14 clang-format-14
  need command clang-tidy-14 clang-tidy-14
  need llvm clang-tidy/ClangTidyCheck.h libclang-14-dev
  need llvm llvm/Support/Registry.h llvm-14-dev
  need library "clang_rt.fuzzer-$(uname -m)" libclang-rt-14-dev
}

# Servers that tests start for themselves; without them these tests are skipped. Nobody's own machine gets them.
need_for_servers() {
  need postgresql initdb postgresql-15
  need command sbatch slurm-wlm
  need command pkill procps
}

# Installs what the calls of need found missing, and looks again afterwards.
install_missing() {
  [ ${#missing_packages[@]} -eq 0 ] && return
  local packages things thing as_root=()
  mapfile -t packages < <(printf '%s\n' "${missing_packages[@]}" | sort -u)
  things=("${missing_things[@]}")
  missing_things=()
  missing_packages=()

  local wanted
  wanted="missing here: $(join_by ', ' "${things[@]}")
These packages of Debian 12 bring them: ${packages[*]}"
  has_command apt-get || die "$wanted
There is no apt-get to install them with; install what is missing in this system's own way and try again."
  if [ "$(id -u)" -ne 0 ]; then
    has_command sudo || die "$wanted
Installing them needs root or sudo. As root: apt-get install ${packages[*]}"
    as_root=(sudo)
    # Without a terminal nobody can type a password.
    [ -t 0 ] || as_root+=(-n)
  fi

  say "Installing ${packages[*]} ..."
  local log
  log=$(mktemp)
  # Updating may fail for a source that has nothing to do with these packages: only installing must succeed.
  if ! { run_apt update || true; run_apt install -y --no-install-recommends "${packages[@]}"; } >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    rm -f "$log"
    die "$wanted
Installing them failed; the last lines of apt-get are above. Behind a proxy, set http_proxy and https_proxy and try
again. As root: apt-get install ${packages[*]}"
  fi
  rm -f "$log"
  hash -r
  for thing in "${things[@]}"; do
    "has_${thing% *}" "${thing#* }" || die "the packages are installed, but the $thing is still not found"
  done
}

# sudo drops the environment, and the proxies with it. A mirror that never answers is given up after a minute.
run_apt() {
  local settings=(DEBIAN_FRONTEND=noninteractive) name
  for name in http_proxy https_proxy no_proxy; do
    [ -z "${!name-}" ] || settings+=("$name=${!name}")
  done
  "${as_root[@]}" env "${settings[@]}" apt-get -q -o DPkg::Lock::Timeout=300 -o Acquire::http::Timeout=30 \
    -o Acquire::https::Timeout=30 -o Acquire::Retries=1 "$@" </dev/null
}

join_by() {
  local separator=$1 text=$2
  shift 2
  printf '%s' "$text" "${@/#/$separator}"
}

# configure PRESET FOLDER [CMAKE ARGUMENTS]: makes or renews a build folder.
configure() {
  local preset=$1 folder=$2
  shift 2
  quietly "$folder" cmake --preset "$preset" -B "$folder" "$@"
}

# build FOLDER [TARGETS]: says nothing and takes no time when everything is up to date.
build() {
  local folder=$1
  shift
  is_idle "$folder" "$@" && quietly "$folder" ninja -C "$folder" "$@" && return
  say "Building in $folder/ ..."
  if [ -t 2 ]; then
    locked "$folder" ninja -C "$folder" "$@" >&2 || die "the build failed"
  else
    quietly "$folder" ninja -C "$folder" "$@"
  fi
  ninja -C "$folder" -n "$@" >"$folder/.idle" 2>&1
}

# is_idle FOLDER [TARGETS]: whether a build would do no more than it does when everything is up to date: it looks up
# the build time, which may come from the environment. What that is was written down behind the last build.
is_idle() {
  local folder=$1
  shift
  [ "$(cat "$folder/.idle" 2>/dev/null)" = "$(ninja -C "$folder" -n "$@" 2>&1)" ]
}

# quietly FOLDER COMMAND: shows what the command printed only when it fails.
quietly() {
  local folder=$1 log
  shift
  mkdir -p "$folder"
  log=$(mktemp)
  if ! locked "$folder" "$@" </dev/null >"$log" 2>&1; then
    tail -n 200 "$log" >&2
    rm -f "$log"
    die "this command failed: $*"
  fi
  rm -f "$log"
}

# Two builds in one folder at the same time would spoil it: the second waits for the first.
locked() {
  local folder=$1
  shift
  flock "$folder/.lock" "$@"
}
