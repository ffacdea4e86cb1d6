# Sourced by ./run and ./test: installs what Debian packages are missing. Needs root or sudo only
# when there is something to install.
plinth_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "installing: ${missing[*]}" >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

build_packages=(g++ cmake ninja-build ccache pkg-config qt6-base-dev qt6-wayland libqt6svg6 libgl1-mesa-dev
    libxcb1-dev libxcb-shm0-dev libxcb-xfixes0-dev libfreetype-dev libharfbuzz-dev libfribidi-dev libfontconfig-dev
    fonts-noto-core fonts-dejavu-core libglib2.0-dev libgmime-3.0-dev libudev-dev libasound2-dev
    qt6-image-formats-plugins librsvg2-bin libgif-dev libtiff-dev shared-mime-info
    libbenchmark-dev)
test_packages=(libgtest-dev clang clang-format locales xvfb openbox xdotool xclip x11-utils x11-xserver-utils x11-xkb-utils
    imagemagick
    xdg-utils desktop-file-utils libglib2.0-bin attr dbus at-spi2-core weston sway grim wl-clipboard python3
    python3-gi ibus gir1.2-ibus-1.0)
