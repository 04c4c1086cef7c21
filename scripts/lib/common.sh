# Sourced by the scripts beside it: finds the top of the tree and installs missing Debian packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

say() { printf '==> %s\n' "$*" >&2; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# timed WHAT COMMAND...: runs it and says how long it took.
timed() {
    local what=$1 start=$SECONDS
    shift
    say "$what"
    "$@"
    say "$what took $((SECONDS - start)) s"
}

# install_packages [KIND]: installs what scripts/packages.txt lists and this machine lacks, with "test" also what the
# tests need, with "check" what scripts/check needs; says nothing when all is there.
install_packages() {
    local wanted missing=() name
    wanted=$(awk -v kind="${1:-}" '!/^#/ && (NF == 1 || $2 == kind) { print $1 }' scripts/packages.txt)
    for name in $wanted; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
    done
    # Some packages of nodejs bring npm with them and conflict with Debian's package of that name.
    if [ "${1:-}" = test ] && ! command -v npm >/dev/null; then missing+=(npm); fi
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing Debian packages: ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# configure PRESET [OPTION...]: with the tests, unless the options say otherwise.
configure() {
    cmake --preset "$1" -DBUILD_TESTING=ON "${@:2}" >&2
}

# build PRESET [TARGET...]: builds the targets, or everything.
build() {
    say "Building ${*:2} of preset $1 into build/$1"
    cmake --build --preset "$1" ${2:+--target "${@:2}"} >&2
}
