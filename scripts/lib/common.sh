# Sourced by the scripts beside it: finds the top of the tree and installs missing Debian packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

say() { printf '==> %s\n' "$*" >&2; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs what scripts/packages.txt lists and this machine lacks; says nothing when all is there.
install_packages() {
    local wanted missing=() name
    wanted=$(grep -v '^#' scripts/packages.txt)
    for name in $wanted; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing Debian packages: ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET...]: configures the preset and builds the targets, or all of them.
build() {
    local preset=$1
    shift
    say "Building ${*:-everything} of preset $preset into build/$preset"
    cmake --preset "$preset" >&2
    cmake --build --preset "$preset" ${*:+--target "$@"} >&2
}
