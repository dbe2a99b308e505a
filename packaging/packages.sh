# The distribution's packages that the project is built, run and tested with. Sourced by the scripts in the root.

build_packages=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev qcoro-qt6-dev libsndfile1-dev nlohmann-json3-dev libcubeb-dev
  libsecret-1-dev libsodium-dev
  fonts-quicksand fonts-jetbrains-mono fonts-material-design-icons-iconfont
)
check_packages=(
  libgtest-dev libgmock-dev librapidcheck-dev libbenchmark-dev
  clang clang-format clang-tidy libclang-rt-14-dev python3 strace sox ccache
  pulseaudio pulseaudio-utils xvfb xdotool imagemagick dbus at-spi2-core python3-gi gir1.2-atspi-2.0 python3-numpy
  desktop-file-utils appstream dpkg-dev libcpp-httplib-dev gnome-keyring openssl
)

# Installs those of the named packages that are missing; silent when there are none.
install_packages() {
  local missing=() name
  for name in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing ${missing[*]} …"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Runs a command whose output matters only when it fails.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
