# shellcheck shell=bash
# Common ground of ./run, ./test, ./bench/run and tests/wine: packages, builds and the Wine prefix. To be sourced by bash
# (with -euo pipefail); it changes nothing by itself but sets MURMELIX_ROOT.
MURMELIX_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '== %s\n' "$*"; }
warn() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }
die() {
    warn "$*"
    exit 1
}

# Debian packages that a build, the programs' start, the tests and the benchmarks need.
MURMELIX_PACKAGES=(
    build-essential cmake ninja-build ccache python3
    g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix
    wine64 xvfb xauth openbox xdotool x11-utils imagemagick fonts-dejavu-core
    espeak-ng sox librsvg2-bin
    googletest libgtest-dev libbenchmark-dev nlohmann-json3-dev
    clang clang-format libclang-rt-14-dev
)

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "the packages can be installed by root alone, and there is no sudo; please install: ${MISSING_PACKAGES[*]}"
    fi
}

# One call of apt-get that waits for another one's lock, and tries three times: mirrors fail now and then.
apt() {
    local attempt
    for attempt in 1 2 3; do
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 \
            "$@" </dev/null && return
        warn "apt-get $1 failed (attempt $attempt of 3)"
    done
    return 1
}

# Fills MISSING_PACKAGES with those of MURMELIX_PACKAGES that are not installed.
find_missing_packages() {
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' "${MURMELIX_PACKAGES[@]}" 2>/dev/null |
        sed -n 's/^ii *//p') || true
    MISSING_PACKAGES=()
    local package
    for package in "${MURMELIX_PACKAGES[@]}"; do
        grep -qxF "$package" <<<"$installed" || MISSING_PACKAGES+=("$package")
    done
}

install_packages() {
    command -v dpkg-query >/dev/null || die "the packages are Debian's: this machine has no dpkg"
    find_missing_packages
    [ ${#MISSING_PACKAGES[@]} -gt 0 ] || return 0
    say "Installing ${MISSING_PACKAGES[*]}"
    # The lists may be old or absent: they are fetched only where the first attempt shows it.
    apt install --no-install-recommends --simulate "${MISSING_PACKAGES[@]}" >/dev/null 2>&1 || apt update
    apt install --no-install-recommends "${MISSING_PACKAGES[@]}" || die "the packages could not be installed"
}

# build_preset PRESET [TARGET…]: configures once, and builds what has changed.
build_preset() {
    local preset=$1
    shift
    local targets=()
    [ $# -eq 0 ] || targets=(--target "$@")
    say "Building $preset"
    mkdir -p "$MURMELIX_ROOT/build"
    (
        cd "$MURMELIX_ROOT"
        exec 9>"build/$preset.lock"
        flock 9
        if [ ! -e "build/$preset/build.ninja" ]; then
            cmake --preset "$preset" >"build/$preset.log" 2>&1 || {
                cat "build/$preset.log" >&2
                exit 1
            }
        fi
        cmake --build "build/$preset" "${targets[@]}"
    ) || die "the preset $preset could not be built"
}

# The loader itself: Debian's script around it warns of a missing 32-bit half, which is not used here.
find_wine() {
    local candidate
    for candidate in /usr/lib/wine/wine64 "$(command -v wine64 || true)" "$(command -v wine || true)"; do
        if [ -n "$candidate" ] && [ -x "$candidate" ]; then
            WINE=$candidate
            WINESERVER=$(dirname "$candidate")/wineserver
            [ -x "$WINESERVER" ] || WINESERVER=$(command -v wineserver || true)
            return
        fi
    done
    die "Wine is missing: install the package wine64"
}

# wine_environment: a prefix of the project's own, quiet, without Mono and Gecko.
wine_environment() {
    find_wine
    export WINEPREFIX="${WINEPREFIX:-$MURMELIX_ROOT/build/wine}" WINEDEBUG="${WINEDEBUG:--all}"
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
}

# Makes the prefix of WINEPREFIX where it is not there yet; only one process makes it, others wait for that.
make_prefix() {
    [ ! -e "$WINEPREFIX/.ready" ] || return 0
    mkdir -p "$WINEPREFIX"
    (
        exec 9>"$WINEPREFIX.lock"
        flock -w 600 9 || die "another process has been making $WINEPREFIX for ten minutes"
        [ ! -e "$WINEPREFIX/.ready" ] || exit 0
        # A crashed program ends and says so, instead of showing a window that waits for a user.
        cat >"$WINEPREFIX/settings.reg" <<'REG'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\DllOverrides]
"winemenubuilder.exe"=""
REG
        # shellcheck disable=SC2016 # expanded by the inner shell
        timeout -k 10 300 xvfb-run -a bash -c '
            "$1" wineboot --init && "$1" regedit /S "$3" && "$2" -w' make_prefix \
            "$WINE" "$WINESERVER" "$WINEPREFIX/settings.reg" >"$WINEPREFIX/wineboot.log" 2>&1 ||
            die "the Wine prefix could not be made; see $WINEPREFIX/wineboot.log"
        touch "$WINEPREFIX/.ready"
    ) || exit 1
}
