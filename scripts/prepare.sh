# Sourced by play.sh and test.sh: installs what the build needs, then
# configures and builds everything into build/.

# libx11-dev: the input manager reads the keyboard state from X directly;
# libxtst6: lets the tests press keys on the virtual display.
QV_PACKAGES="build-essential g++ cmake libsfml-dev libx11-dev libgtest-dev libbenchmark-dev xvfb xauth libxtst6"

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
