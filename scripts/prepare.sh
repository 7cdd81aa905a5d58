# Sourced by play.sh and test.sh: installs what the build needs, then
# configures and builds everything into build/.

# libx11-dev: the input manager reads the keyboard state from X directly;
# libxtst6: lets the tests press keys on the virtual display;
# clang-format: the test command checks that every source is formatted.
QV_PACKAGES="build-essential g++ cmake libsfml-dev libx11-dev libgtest-dev libbenchmark-dev xvfb xauth libxtst6 clang-format"

qv_install_missing() {
  local missing=()
  for pkg in $QV_PACKAGES; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" ||
      missing+=("$pkg")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Need root or sudo to install: ${missing[*]}" >&2; return 1; }
    sudo="sudo"
  fi
  $sudo apt-get update &&
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
}

# qv_build [folder [cmake options...]]: configures and builds into folder
# (build/ by default).
qv_build() {
  local dir=${1:-build}
  shift || true
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" &&
    cmake --build "$dir" -j "$(nproc)"
}

# What the sanitizers report on and ignore: leaks are checked, except those
# of the software OpenGL driver. The driver is unloaded when the last window
# closes, before the leak check at exit, which would then find its memory
# unreachable and could not even name the library it came from; running
# with the driver preloaded (QV_PRELOAD_GL, for LD_PRELOAD) keeps it loaded
# to the end, and the suppressions file sets aside what it still holds.
qv_sanitizer_env() {
  local root
  root=$(pwd)
  export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1:strict_string_checks=1"
  export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
  export LSAN_OPTIONS="suppressions=$root/scripts/lsan-suppressions.txt:print_suppressions=0"
  QV_PRELOAD_GL=$(ls /usr/lib/*/dri/swrast_dri.so 2>/dev/null | head -n 1 || true)
  export QV_PRELOAD_GL
}

# qv_fuzz seconds: builds the fuzz targets with clang into build-fuzz/ and
# runs each for that many seconds (0: only builds them). Skipped, with a
# note, without clang or its libFuzzer runtime.
qv_fuzz() {
  if ! command -v clang++ >/dev/null ||
    ! echo 'extern "C" int LLVMFuzzerTestOneInput(const char *, long) { return 0; }' |
    clang++ -fsanitize=fuzzer -x c++ - -o /dev/null 2>/dev/null; then
    echo "Fuzz targets skipped: clang++ with libFuzzer is not installed."
    return 0
  fi
  cmake -S fuzz -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ >/dev/null &&
    cmake --build build-fuzz -j "$(nproc)" || return 1
  [ "$1" = 0 ] && return 0
  ALSOFT_DRIVERS=null xvfb-run -a -n $((100 + RANDOM % 900)) scripts/fuzz.sh "$1"
}

# Lists the project's C++ sources that .clang-format would change.
qv_check_format() {
  local bad
  bad=$(git ls-files --cached --others --exclude-standard '*.h' '*.cpp' |
    xargs clang-format --dry-run 2>&1 | grep -o '^[^:]*:' | sort -u || true)
  [ -z "$bad" ] && return 0
  echo "Not formatted (run clang-format -i on them):" >&2
  echo "$bad" >&2
  return 1
}
