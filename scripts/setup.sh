#!/usr/bin/env bash
# Installs the Debian packages that this project needs and this machine lacks.
#
#   bash scripts/setup.sh [PURPOSE...]
#
# Purposes, without any of them program: program, test, java, check (layout and lint), bench (with the
# libraries compared with), plot, cross (tests for ARM in an emulator), cycles (models of ARM cores), android (compiling
# for it, and its package, without an NDK), web (the module for pages), browsers (to try it in), fuzz, valgrind, docs,
# video, plugins (to try them in their hosts).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

packages=(cmake g++ make)
for purpose in "${@:-program}"; do
  case "$purpose" in
    program)
      packages+=(libcli11-dev libexiv2-dev libgd-dev libheif-dev libjpeg62-turbo-dev libpng-dev libwebp-dev zlib1g-dev)
      packages+=(libavcodec-dev libavdevice-dev libavfilter-dev libavformat-dev libavutil-dev pkgconf)
      ;;
    test)
      packages+=(default-jdk-headless dpkg-dev frei0r-plugins-dev junit4 libgtest-dev mandoc pkgconf)
      packages+=(gstreamer1.0-tools libgstreamer-plugins-base1.0-dev)
      ;;
    java) packages+=(default-jdk-headless) ;;
    check) packages+=(clang-format clang-tidy) ;;
    bench) packages+=(libbenchmark-dev libopencv-dev libyuv-dev) ;;
    cross)
      packages+=(default-jdk-headless g++-aarch64-linux-gnu g++-arm-linux-gnueabihf googletest qemu-user)
      ;;
    cycles) packages+=(g++-aarch64-linux-gnu llvm-19) ;;
    android)
      packages+=(clang lld llvm libclang-rt-14-dev libc++-14-dev libc6-dev-arm64-cross libc6-dev-armhf-cross)
      packages+=(android-libnativehelper-dev android-platform-frameworks-native-headers)
      packages+=(default-jdk-headless zip unzip)
      ;;
    web)
      packages+=(clang-19 googletest libc++-19-dev-wasm32 libc++abi-19-dev-wasm32 libclang-rt-19-dev-wasm32 lld-19 wasi-libc)
      command -v node >/dev/null || packages+=(nodejs npm)
      ;;
    browsers) packages+=(chromium firefox-esr) ;;
    fuzz) packages+=(clang libclang-rt-14-dev) ;;
    valgrind) packages+=(valgrind) ;;
    docs) packages+=(doxygen) ;;
    video) packages+=(ffmpeg) ;;
    plugins)
      packages+=(gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-tools libgstreamer-plugins-base1.0-dev)
      packages+=(ffmpeg frei0r-plugins-dev melt)
      ;;
    plot) packages+=(python3 python3-matplotlib) ;;
    *)
      echo "setup.sh: unknown purpose '$purpose'" >&2
      exit 2
      ;;
  esac
done

if ! command -v apt-get >/dev/null; then
  echo "setup.sh: no apt-get here; needed are what Debian calls ${packages[*]}" >&2
  exit 0
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || {
    echo "setup.sh: install these as root, then try again: ${missing[*]}" >&2
    exit 1
  }
  as_root=(sudo)
fi

apt_get=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300)
echo "Installing ${missing[*]}"
quietly "${apt_get[@]}" update </dev/null
quietly "${apt_get[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null
