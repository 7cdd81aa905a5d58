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

qv_build() {
  cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo &&
    cmake --build build -j "$(nproc)"
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
