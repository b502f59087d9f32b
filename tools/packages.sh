# Sourced by ./dev: sees to it that the packages a command needs are there.
#
# Each line names a Debian package and says what it is for. On macOS the Brewfile takes their place.
# shellcheck shell=bash
# shellcheck disable=SC2034  # the lists are read by ./dev

buildPackages='
g++|compiles the program
cmake|describes the build
ninja-build|runs the build
ccache|makes the second build quick
pkg-config|finds libraries
libboost-json1.81-dev|reads and writes JSON
libboost-url1.81-dev|takes URLs apart
libutf8proc-dev|knows where user-perceived characters end
libcurl4-openssl-dev|downloads
libssl-dev|checks signatures and digests
qt6-base-dev|draws the window
libxcb1-dev|watches the windows in the tests
libgtest-dev|runs the tests
'
runPackages='
nodejs|runs the helper and its stand-ins
'
screenPackages='
fonts-noto-core|the writing in the pictures
'
testPackages='
libarchive-tools|unpacks as macOS does
xvfb|a display that is only memory
dbus|a session bus for the tests alone
at-spi2-core|tells the tests what a screen reader hears
xdotool|moves the pointer and types
libglib2.0-bin|calls the program over the session bus
fonts-noto-core|the writing in the window
'
packagePackages='
dpkg-dev|makes the package
lintian|looks for faults in it
librsvg2-bin|draws the icons
desktop-file-utils|checks the desktop entry
appstream|checks what is told to software centres
man-db|checks the man page
'
benchPackages='
libbenchmark-dev|measures
curl|downloads by hand, to compare with
openssl|digests by hand, to compare with
'
mutantPackages='
git|lists the sources
mold|links quickly
'
checkPackages='
git|lists the sources
clang-19|is the second compiler
libclang-rt-19-dev|brings its sanitizers
clang-tidy-19|looks for likely faults
clang-format-19|checks the formatting
shellcheck|checks the shell scripts
npm|fetches the compiler for the Darwin check
libgnustep-gui-dev|declares Foundation and AppKit for the Darwin check
'
packagesInstalled=no

# missingPackages LIST: the lines of LIST whose package isn't installed.
missingPackages() {
    local names installed name reason
    names=$(cut -d'|' -f1 <<<"$1")
    # shellcheck disable=SC2086  # one word per package
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $names 2>/dev/null || true)
    while IFS='|' read -r name reason; do
        [[ -n $name ]] || continue
        # From whatever source: a Node.js of the user's own serves as well.
        case $name in
            nodejs) command -v node >/dev/null && continue ;;
            npm) command -v npm >/dev/null && continue ;;
        esac
        grep -qxF "installed $name" <<<"$installed" || echo "$name|$reason"
    done <<<"$1"
}

# needPackages LIST...: installs what is missing and says so; silent when nothing is.
needPackages() {
    local missing name reason names=() asRoot=()
    if [[ $(uname) == Darwin ]]; then
        brew bundle check --quiet --no-upgrade >/dev/null 2>&1 || brew bundle install --no-upgrade
        return
    fi
    if ! command -v dpkg-query >/dev/null; then
        echo "dev: not a Debian system; these packages, or their like, must be there:" >&2
        cut -d'|' -f1 <<<"$(printf '%s' "$@")" >&2
        return
    fi

    missing=$(missingPackages "$(printf '%s' "$@")")
    [[ -n $missing ]] || return 0
    echo "dev: installing from Debian:"
    while IFS='|' read -r name reason; do
        names+=("$name")
        echo "  $name, which $reason"
    done <<<"$missing"

    if [[ $(id -u) != 0 ]]; then asRoot=(sudo); fi
    local install=(env DEBIAN_FRONTEND=noninteractive apt-get install
        --yes --quiet=2 --no-install-recommends "${names[@]}")
    # Package lists that are missing or out of date show as an install that can't even be planned or fetched.
    if ! "${install[@]}" --simulate >/dev/null 2>&1 || ! ${asRoot[@]+"${asRoot[@]}"} "${install[@]}" >/dev/null; then
        ${asRoot[@]+"${asRoot[@]}"} apt-get update --quiet=2
        ${asRoot[@]+"${asRoot[@]}"} "${install[@]}" >/dev/null
    fi
    packagesInstalled=yes
}
