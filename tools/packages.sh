# shellcheck shell=bash
# Sourced by the commands at the root: installs the Debian packages that are missing, and only those.

# ensure_packages FILE…: each file lists packages, one a line; "#" begins a comment.
ensure_packages() {
    local wanted missing as_root=()
    mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$@")
    mapfile -t missing < <(missing_packages "${wanted[@]}")
    ((${#missing[@]} > 0)) || return 0

    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and installing them takes root or sudo: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing ${#missing[@]} packages: ${missing[*]}"
    "${as_root[@]}" apt-get update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# missing_packages NAME…: prints those that are not installed. A command of a package's name counts as well: a newer npm
# or cmake than Debian's is often there, and Debian's npm cannot be installed beside a newer node.
missing_packages() {
    local installed name
    # dpkg-query fails when it does not know one of them, and still tells about the others.
    # shellcheck disable=SC2016  # the fields are dpkg-query's, not the shell's
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p') || true
    for name in "$@"; do
        grep -qxF -- "$name" <<<"$installed" || command -v "$name" >/dev/null || echo "$name"
    done
}
