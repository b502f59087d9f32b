# Sourced by ./dev: installs the packages that a command needs.
#
# Each line has a Debian package and its purpose. On macOS the Brewfile is used instead.
# shellcheck shell=bash
# shellcheck disable=SC2034  # the lists are read by ./dev

buildPackages='
g++|compiles the program
cmake|configures the build
ninja-build|runs the build
ccache|speeds up later builds
pkg-config|finds libraries
libboost-json1.81-dev|reads and writes JSON
libboost-url1.81-dev|parses URLs
libutf8proc-dev|finds the boundaries of characters
libcurl4-openssl-dev|downloads files
libssl-dev|verifies signatures and digests
qt6-base-dev|draws the window
qt6-l10n-tools|compiles the translations
libxcb1-dev|watches the windows in the tests
libgtest-dev|runs the tests
'
runPackages='
nodejs|runs the helper and its stand-ins
'
screenPackages='
fonts-noto-core|draws the text in the images
'
testPackages='
libarchive-tools|unpacks archives as macOS does
xvfb|provides a display in memory
dbus|provides a private session bus
at-spi2-core|provides the accessibility bus
xdotool|simulates mouse and keyboard
libglib2.0-bin|calls the program over the session bus
iproute2|prepares a private network for the tests
gpg|signs a list of digests in the tests
gpg-agent|keeps the key of that signature
fonts-noto-core|draws the text in the window
'
packagePackages='
dpkg-dev|builds the package
lintian|checks the package
librsvg2-bin|draws the icons
desktop-file-utils|checks the desktop entry
appstream|checks the data for software centres
man-db|checks the man page
'
releasePackages='
openssl|encrypts the private key of releases
gpgv|verifies the digests of the Node.js project
'
benchPackages='
libbenchmark-dev|runs the benchmarks
curl|downloads for comparison
openssl|computes digests for comparison
'
mutantPackages='
git|lists the sources
mold|links quickly
'
checkPackages='
git|lists the sources
clang-19|is the second compiler
libclang-rt-19-dev|provides its sanitizers
clang-tidy-19|finds likely faults
clang-format-19|checks the formatting
llvm-19|reads and changes programs for macOS in the Darwin check
shellcheck|checks the shell scripts
yamllint|checks the description of the builds on Macs
npm|downloads the compiler for the Darwin check
libgnustep-gui-dev|declares Foundation and AppKit for the Darwin check
'
packagesInstalled=no

# missingPackages LIST: prints the lines of LIST whose package isn't installed.
missingPackages() {
    local names installed name reason
    names=$(cut -d'|' -f1 <<<"$1")
    # shellcheck disable=SC2086  # one word per package
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $names 2>/dev/null || true)
    while IFS='|' read -r name reason; do
        [[ -n $name ]] || continue
        # A Node.js or npm that was not installed from Debian is also accepted.
        case $name in
            nodejs) command -v node >/dev/null && continue ;;
            npm) command -v npm >/dev/null && continue ;;
        esac
        grep -qxF "installed $name" <<<"$installed" || echo "$name|$reason"
    done <<<"$1"
}

# needPackages LIST...: installs the missing packages and prints their names.
needPackages() {
    local missing name reason names=() asRoot=()
    if [[ $(uname) == Darwin ]]; then
        brew bundle check --quiet --no-upgrade >/dev/null 2>&1 || brew bundle install --no-upgrade
        return
    fi
    if ! command -v dpkg-query >/dev/null; then
        echo "dev: not a Debian system; these packages or their equivalents must be installed:" >&2
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
    # The simulation or the download fails if the package lists are missing or out of date.
    if ! "${install[@]}" --simulate >/dev/null 2>&1 || ! ${asRoot[@]+"${asRoot[@]}"} "${install[@]}" >/dev/null; then
        ${asRoot[@]+"${asRoot[@]}"} apt-get update --quiet=2
        ${asRoot[@]+"${asRoot[@]}"} "${install[@]}" >/dev/null
    fi
    packagesInstalled=yes
}
