#!/usr/bin/env bash
# Installs the Debian packages that are missing.
#
#   scripts/install-packages.sh GROUP...
#
#   build      to build the library and cordelctl and to run the demo
#   native     to build and run the native tests, and the checks of the sources
#   fonts      to verify the fonts of many families
#   windows    to build for Windows and to run the tests under Wine
#   bench      to build and run the benchmarks
#   clang      to build with clang, and to run the fuzz targets
#   coverage   to measure which lines the tests reach
#   mutants    to change the sources and see whether the tests notice
#   packages   to make the packages, the installer for Windows and the API pages
#   pictures   to look at the page of cordelctl report, and to make the pictures of the documentation
#   bare       to make a bare machine (scripts/on-bare-machine)
#
# Does nothing, and asks for nothing, when all are there.

set -euo pipefail

packages_of() {
    case "$1" in
    build)
        echo g++ cmake ninja-build pkg-config libexpat1-dev libpugixml-dev libcli11-dev nlohmann-json3-dev \
            libfreetype-dev liblcms2-dev libharfbuzz-dev libkainjow-mustache-dev libmd-dev libgtest-dev libgmock-dev fonts-dejavu-core icc-profiles-free
        ;;
    native)
        packages_of build
        echo git clang-format clang-tidy cppcheck python3 abigail-tools colord-data fonts-tlwg-loma-otf fonts-wqy-microhei \
            e2fsprogs xfsprogs btrfs-progs mount zsh
        ;;
    windows)
        echo g++-mingw-w64-x86-64-posix cmake ninja-build googletest libcli11-dev nlohmann-json3-dev libkainjow-mustache-dev wine wine64 \
            xvfb xauth locales colord-data fonts-dejavu-core fonts-tlwg-loma-otf fonts-wqy-microhei icc-profiles-free
        ;;
    fonts)
        packages_of native
        echo fonts-cantarell fonts-crosextra-caladea fonts-crosextra-carlito fonts-freefont-ttf fonts-hack fonts-inconsolata \
            fonts-lato fonts-liberation fonts-noto-core fonts-open-sans fonts-quicksand fonts-roboto-unhinted \
            fonts-sil-gentium-basic
        ;;
    bench)
        packages_of build
        echo libbenchmark-dev libsqlite3-dev libxml2-dev
        ;;
    clang)
        packages_of build
        echo clang libclang-rt-dev llvm
        ;;
    pictures)
        packages_of build
        echo argyll chromium colord-data pngquant poppler-utils
        ;;
    coverage)
        packages_of native
        echo gcovr
        ;;
    mutants)
        echo python3 python3-clang-14
        ;;
    packages)
        packages_of build
        echo build-essential debhelper doxygen dpkg-dev fakeroot lintian nsis
        ;;
    bare)
        echo debootstrap git
        ;;
    *)
        echo "install-packages.sh: no such group: $1" >&2
        return 1
        ;;
    esac
}

installed() {
    dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' | sed -n 's/ installed$//p'
}

has_candidate() {
    LC_ALL=C apt-cache policy "$1" | grep -q '^  Candidate: [^(]'
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif ! command -v sudo >/dev/null; then
        echo "install-packages.sh: not root, and there is no sudo; run this as root: $*" >&2
        return 1
    elif sudo -n true 2>/dev/null; then
        sudo -n "$@"
    elif { : >/dev/tty; } 2>/dev/null; then
        echo "sudo asks for your password to install packages" >&2
        sudo "$@"
    else
        echo "install-packages.sh: sudo needs a password, and there is no terminal to ask for it; run this as root: $*" >&2
        return 1
    fi
}

apt() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y "$@"; }

[ $# -gt 0 ] || { sed -n '2,/^$/s/^# \{0,1\}//p' "$0" >&2; exit 2; }
command -v dpkg-query >/dev/null || { echo "install-packages.sh: this is no Debian system" >&2; exit 1; }

wanted=""
for group in "$@"; do
    wanted+=" $(packages_of "$group")" || exit 2
done

mapfile -t missing < <(LC_ALL=C comm -23 <(tr ' ' '\n' <<<"$wanted" | grep . | LC_ALL=C sort -u) <(installed | LC_ALL=C sort -u))
[ ${#missing[@]} -gt 0 ] || exit 0

echo "installing: ${missing[*]}"
for package in "${missing[@]}"; do
    if ! has_candidate "$package"; then
        apt update
        break
    fi
done
apt install --no-install-recommends "${missing[@]}" || { # the lists may name versions that are gone
    apt update
    apt install --no-install-recommends "${missing[@]}"
}
