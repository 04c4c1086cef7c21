# Sourced by the scripts beside it: finds the top of the tree and installs missing Debian packages.
set -euo pipefail
caller=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

say() { printf '==> %s\n' "$*" >&2; }

# of_caller PATH: the path as whoever started the script means it.
of_caller() { (cd "$caller" && realpath -m -- "$1"); }

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

# Both commands fail for a package that they do not know.
is_installed() { [[ $(dpkg-query -W -f='${Status}' "$1" 2>/dev/null || true) == *'ok installed' ]]; }
has_candidate() { [[ $(LC_ALL=C apt-cache policy "$1" 2>/dev/null || true) =~ Candidate:\ [^\(] ]]; }

# one_of ALTERNATIVES: of packages separated by "|", the first that is installed or can be; the first if none can.
one_of() {
    local names name
    IFS='|' read -ra names <<<"$1"
    for name in "${names[@]}"; do
        if is_installed "$name" || has_candidate "$name"; then
            echo "$name"
            return
        fi
    done
    echo "${names[0]}"
}

# missing_packages [KIND]: the packages that this machine lacks, one a line.
missing_packages() {
    local wanted names name
    wanted=$(awk -v kind="${1:-}" '!/^#/ && (NF == 1 || $2 == kind) { print $1 }' scripts/packages.txt)
    for names in $wanted; do
        name=$(one_of "$names")
        is_installed "$name" || echo "$name"
    done
    # Some packages of nodejs bring npm with them and conflict with Debian's package of that name.
    if [ "${1:-}" = test ] && ! command -v npm >/dev/null; then echo npm; fi
}

# install_packages [KIND]: installs what scripts/packages.txt lists and this machine lacks, with "test" also what the
# tests need, with "check" what scripts/check needs, and so on; says nothing when all is there.
install_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] && return
    say "Updating the list of Debian packages"
    as_root apt-get update -q
    # Only now is it known for certain which alternatives this release has.
    mapfile -t missing < <(missing_packages "$@")
    say "Installing Debian packages: ${missing[*]}"
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
