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

# Debian packages that the preset host is built with.
MURMELIX_HOST_PACKAGES=(
    build-essential cmake ninja-build python3 clang-15 lld-15
    fonts-liberation fonts-dejavu-core fonts-wqy-microhei fonts-symbola
    librsvg2-bin imagemagick libpng-dev
    googletest libgtest-dev libbenchmark-dev nlohmann-json3-dev
)
# These, and those that the other builds, the programs' start, the tests and the benchmarks need.
MURMELIX_PACKAGES=(
    "${MURMELIX_HOST_PACKAGES[@]}"
    g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools
    wine64 xvfb xauth openbox xdotool x11-utils
    espeak-ng sox openssl clang-format-15 nsis
)
# The web server of ./run --site: its program alone, not the service that would run from then on.
MURMELIX_SITE_PACKAGES=(apache2-bin)
# The browser in which the tests look at the web site.
MURMELIX_BROWSER_PACKAGES=(chromium)
# The chat servers that the tests talk to, unpacked alone: installed, they would run as services from then on. And what they need.
MURMELIX_CHAT_SERVERS=(ngircd inspircd)
MURMELIX_CHAT_SERVER_LIBRARIES=(libgnutls30 libident)

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

# find_missing_packages PACKAGE…: fills MISSING_PACKAGES with those of them that are not installed.
find_missing_packages() {
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^ii *//p') || true
    MISSING_PACKAGES=()
    local package
    for package in "$@"; do
        grep -qxF "$package" <<<"$installed" || MISSING_PACKAGES+=("$package")
    done
}

# install_packages PACKAGE…: where they are missing.
install_packages() {
    command -v dpkg-query >/dev/null || die "the packages are Debian's: this machine has no dpkg"
    find_missing_packages "$@"
    [ ${#MISSING_PACKAGES[@]} -gt 0 ] || return 0
    say "Installing ${MISSING_PACKAGES[*]}"
    # The lists may be old or absent: they are fetched only where the first attempt shows it.
    if apt install --no-install-recommends --simulate "${MISSING_PACKAGES[@]}" >/dev/null 2>&1; then
        apt install --no-install-recommends "${MISSING_PACKAGES[@]}" && return
    fi
    apt update
    apt install --no-install-recommends "${MISSING_PACKAGES[@]}" || die "the packages could not be installed"
}

# unpack_packages DIRECTORY PACKAGE…: the files of these packages below the directory, where they are not there yet. Nothing of
# them is installed, and nothing started.
unpack_packages() {
    local directory=$1 half_done=$1.new file
    shift
    [ "$(cat "$directory/.packages" 2>/dev/null)" != "$*" ] || return 0
    command -v dpkg-deb >/dev/null || die "the packages are Debian's: this machine has no dpkg"
    say "Unpacking $*"
    rm -rf "$half_done" "$directory"
    mkdir -p "$half_done/download"
    (
        cd "$half_done/download"
        apt-get -q -o Acquire::Retries=3 download "$@" >/dev/null 2>&1 && exit
        apt update
        apt-get -q -o Acquire::Retries=3 download "$@"
    ) || die "the packages could not be fetched: $*"
    for file in "$half_done"/download/*.deb; do
        dpkg-deb -x "$file" "$half_done"
    done
    rm -r "$half_done/download"
    echo "$*" >"$half_done/.packages"
    mv "$half_done" "$directory"
}

# Where there is ccache: a compilation found again, in this tree or in another clone, precompiled headers included.
export CCACHE_BASEDIR=$MURMELIX_ROOT CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime

# build_preset PRESET [TARGET…]: configures once, and builds what has changed. The preset host-asan takes its tests, compiled,
# from host.
build_preset() {
    local preset=$1
    shift
    [ "$preset" != host-asan ] || build_preset host unit_test_objects
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

# The program directory at build/Murmelix, with all that ./run, the whole-program tests and their benchmarks start.
build_programs() {
    build_preset host assets_characters assets_portraits assets_sounds assets_icons trace
    build_preset win64 programs
    stage win64
}

# stage PRESET: fills the program directory of the preset, build/Murmelix for win64 and build/Murmelix-PRESET for others.
stage() {
    local directory=$MURMELIX_ROOT/build/Murmelix
    [ "$1" = win64 ] || directory+=-$1
    cmake --install "$MURMELIX_ROOT/build/$1" --prefix "$directory" >"$MURMELIX_ROOT/build/$1-staging.log" ||
        die "the programs of $1 could not be staged; see build/$1-staging.log"
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

# A prefix of the project's own, quiet, without Mono and Gecko. A WINEPREFIX that is set counts below build/ alone: the
# user's own prefix is never touched.
wine_environment() {
    find_wine
    case "${WINEPREFIX:-}" in
    "$MURMELIX_ROOT"/build/?*) ;;
    *) WINEPREFIX=$MURMELIX_ROOT/build/wine ;;
    esac
    export WINEPREFIX WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
}

# What is in a bare prefix; another text has it made anew.
BARE_PREFIX="with linked fonts, without devices"

# Makes a prefix at the directory $1 as Wine makes it, once; who comes meanwhile waits.
make_bare_prefix() {
    local bare=$1
    ! is_bare_prefix "$bare" || return 0
    mkdir -p "$bare"
    (
        exec 9>"$bare.lock"
        flock -w 600 9 || die "another process has been making $bare for ten minutes"
        ! is_bare_prefix "$bare" || exit 0
        rm -rf "$bare"
        mkdir -p "$bare"
        # A crashed program ends and says so, instead of showing a window that waits for a user. Nobody looks for devices
        # that are plugged in, which takes a fifth of a second of the processor whenever a prefix begins to be used.
        cat >"$bare/settings.reg" <<'REG'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_LOCAL_MACHINE\System\CurrentControlSet\Services\PlugPlay]
"Start"=dword:00000004
REG
        # The font that Wine takes for those of Windows has European letters alone: others are taken from these.
        local links='HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontLink\SystemLink'
        local linked='DejaVuSans.ttf,DejaVu Sans\0wqy-microhei.ttc,WenQuanYi Micro Hei\0Symbola_hint.ttf,Symbola'
        # shellcheck disable=SC2016 # expanded by the inner shell
        WINEPREFIX=$bare timeout -k 10 300 xvfb-run -a bash -c '
            "$1" wineboot --init && "$1" regedit /S "$3" &&
                "$1" reg add "$4" /v "Liberation Sans" /t REG_MULTI_SZ /d "$5" /f && "$2" -w' make_bare_prefix \
            "$WINE" "$WINESERVER" "$bare/settings.reg" "$links" "$linked" >"$bare/wineboot.log" 2>&1 ||
            die "the Wine prefix could not be made; see $bare/wineboot.log"
        echo "$BARE_PREFIX" >"$bare/.ready"
    ) || exit 1
}

is_bare_prefix() {
    [ "$(cat "$1/.ready" 2>/dev/null)" = "$BARE_PREFIX" ]
}

# copy_prefix FROM TO: in a moment, because files are shared by hard links; those that are written in place are not.
copy_prefix() {
    local from=$1 to=$2 half_done=$2.new written
    rm -rf "$half_done"
    cp -al "$from" "$half_done"
    for written in system.reg user.reg userdef.reg drive_c/windows/win.ini drive_c/windows/system.ini \
        drive_c/windows/msagent; do
        [ -e "$from/$written" ] || continue
        rm -r "${half_done:?}/$written"
        cp -a "$from/$written" "$half_done/$written"
    done
    mv "$half_done" "$to"
}

# Makes the prefix of WINEPREFIX where it is not there yet, as a copy of the one at MURMELIX_ORIGIN, in which nothing may run.
# Where that is not set, no program has written into the copied one.
make_prefix() {
    [ ! -e "$WINEPREFIX/.ready" ] || return 0
    local origin=${MURMELIX_ORIGIN:-}
    if [ -z "$origin" ]; then
        origin=$MURMELIX_ROOT/build/wine-bare
        make_bare_prefix "$origin"
    fi
    mkdir -p "$(dirname "$WINEPREFIX")"
    (
        exec 9>"$WINEPREFIX.lock"
        flock -w 600 9 || die "another process has been making $WINEPREFIX for ten minutes"
        if [ ! -e "$WINEPREFIX/.ready" ]; then
            rm -rf "$WINEPREFIX" # what another version of this script, or half of a copy, has left
            copy_prefix "$origin" "$WINEPREFIX"
        fi
    ) || exit 1
}

# Ends and removes the prefixes below build/wine-runs whose owner was killed; their names begin with its process id.
end_left_over_runs() {
    local run owner
    for run in "$MURMELIX_ROOT"/build/wine-runs/*; do
        [ -d "$run" ] || continue
        owner=$(basename "$run")
        [ ! -e "/proc/${owner%%.*}" ] || continue
        WINEPREFIX=$run/prefix timeout 20 "$WINESERVER" -k >/dev/null 2>&1 || true
        rm -rf "$run"
    done
}
