# shellcheck shell=bash disable=SC2154
# What ./run, ./test and tools/lint share: packages and builds. Sourced, with $root set.
# Standard output is left to the programs; all that is said here goes to standard error.

say() { printf '%s\n' "$*" >&2; }
fail() { printf 'Error: %s\n' "$*" >&2; exit 1; }

packages_of() { # SECTION...
    sed "s/{llvm}/$(llvm_version)/g" "$root/tools/packages.txt" | awk -v wanted=" $* " '
        { sub(/#.*/, "") }
        /^\[/ { gsub(/[][ \t]/, ""); inside = index(wanted, " " $0 " "); next }
        inside { for (i = 1; i <= NF; i++) print $i }'
}

is_installed() { # PACKAGE
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

is_offered() { # PACKAGE
    # Read to its end: a pipe that is closed early would count as a failure.
    LC_ALL=C apt-cache policy "$1" 2>/dev/null | grep '^  Candidate: [^(]' >/dev/null
}

# One version for compiler, sanitizer runtime and tools, such as 19, of what is installed, or else offered: the
# system's own clang, since its libraries are tried with that, or else the oldest from 16 on. Newer ones may
# refuse the system's headers, as 19 does those of RapidJSON in Debian 12.
llvm_version() {
    local test version own
    own=$(LC_ALL=C apt-cache depends clang 2>/dev/null | sed -n 's/^ *Depends: clang-\([0-9]*\)$/\1/p' | head -n 1) || true
    ((${own:-0} >= 16)) || own=
    for test in is_installed is_offered; do
        for version in $own {16..30}; do
            if "$test" "clang-$version"; then
                echo "$version"
                return
            fi
        done
    done
    echo 19
}

# Of each set of alternatives one: installed, or else offered, or else the first, to be told as missing.
chosen_of() { # PACKAGE[|PACKAGE...]...
    local names name test
    for names in "$@"; do
        for test in is_installed is_offered true; do
            for name in ${names//|/ }; do
                if "$test" "$name"; then
                    echo "$name"
                    continue 3
                fi
            done
        done
    done
}

missing_of() { # PACKAGE...
    comm -23 <(printf '%s\n' "$@" | sort -u) \
        <(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null \
            | awk '$2 == "installed" { print $1 }' | sort -u)
}

need_room() { # MEGABYTES DIRECTORY PURPOSE
    local free
    free=$(df -Pm "$2" | awk 'NR == 2 { print $4 }')
    ((free >= $1)) || fail "$3 needs about $1 MB free on the disk of $2, and there are only $free MB."
}

# Sets as_root to what goes before a command that needs the administrator's rights.
find_root() {
    if ((EUID == 0)); then
        as_root=()
    elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
        as_root=(sudo -n)
    elif command -v sudo >/dev/null && [[ -t 0 ]]; then
        as_root=(sudo)
    else
        fail "installing needs root or sudo. As root, once: apt-get install --no-install-recommends $*"
    fi
}

wanted_but_missing() { # SECTION...
    local wanted
    mapfile -t wanted < <(packages_of "$@")
    # shellcheck disable=SC2046 # names of packages have no blanks
    missing_of $(chosen_of "${wanted[@]}")
}

install_packages() { # SECTION...
    local missing as_root log apt updated=yes
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "This is no Debian-like system, so nothing is installed; what is missing will be named."
        return 0
    fi
    mapfile -t missing < <(wanted_but_missing "$@")
    ((${#missing[@]})) || return 0

    find_root "${missing[@]}"
    need_room 2000 /usr "Installing ${#missing[@]} packages and what they depend on"
    log=$(mktemp "${TMPDIR:-/tmp}/nimbrelle-setup.XXXXXX")
    apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -q -y
        -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0)

    "${apt[@]}" -o APT::Update::Error-Mode=any update >"$log" 2>&1 || updated=no
    mapfile -t missing < <(wanted_but_missing "$@") # now it is known what is offered
    check_offered "$updated" "$log" "${missing[@]}"
    say "Installing: ${missing[*]}"
    "${apt[@]}" install --no-install-recommends "${missing[@]}" 2>&1 </dev/null \
        | tee -a "$log" | grep --line-buffered -E '^(Need to get|After this|Fetched)' >&2 \
        || true # what counts is what stands installed now
    mapfile -t missing < <(missing_of "${missing[@]}")
    ((${#missing[@]} == 0)) || fail_by_apt "$updated" "$log" "not installed: ${missing[*]}."
    rm -f "$log"
}

fail_by_apt() { # WHETHER-UPDATED LOG MESSAGE
    grep -E '^(E|Err)[: ]' "$2" | tail -n 3 >&2 || true
    if [[ $1 == no ]]; then
        fail "$3 The package lists could not be fetched: is the network there? What apt-get said is in $2"
    fi
    fail "$3 What apt-get said is in $2"
}

check_offered() { # WHETHER-UPDATED LOG PACKAGE...
    local updated=$1 log=$2 unknown
    shift 2
    unknown=$(comm -23 <(printf '%s\n' "$@" | sort -u) \
        <(LC_ALL=C apt-cache policy "$@" | awk '
            /^[^ ]/ { sub(/:$/, "", $1); name = $1 }
            $1 == "Candidate:" && $2 != "(none)" { print name }' | sort -u))
    [[ -n $unknown ]] || return 0
    fail_by_apt "$updated" "$log" "this system does not offer: ${unknown//$'\n'/ } (Debian 12 and 13 do)."
}

# A tool of LLVM under the name that this system gives it: llvm_tool clang-tidy
llvm_tool() { # NAME
    local version
    for version in "-$(llvm_version)" ''; do
        if command -v "$1$version"; then return; fi
    done
    return 1
}

# As many compilers as there are processors, and no more than the memory holds.
job_count() {
    local processors memory
    processors=$(nproc)
    memory=$(awk '/^MemAvailable/ { print int($2 / 900000) }' /proc/meminfo)
    if ((memory < 1)); then memory=1; fi
    echo $((processors < memory ? processors : memory))
}

build_folder() { # PRESET
    if [[ $1 == release ]]; then echo "$root/build"; else echo "$root/build/$1"; fi
}

# What CMake did not find, in a line, since elsewhere the packages have other names.
tell_missing() { # LOG
    local missing
    missing=$(sed -nE \
        -e 's/.*Could not find a package configuration file provided by "([^"]+)".*/\1 (CMake package)/p' \
        -e 's/.*Could NOT find ([A-Za-z0-9]+).*/\1/p' \
        -e "s/.*Package '([^']+)'.* not found.*/\\1 (pkg-config)/p" \
        -e 's/^  (No suitable compiler.*)/\1/p' "$1" | sort -u | paste -sd, | sed 's/,/, /g')
    if [[ -n $missing ]]; then
        say "Not found: $missing. README.md names all libraries that Nimbrelle is built with."
    else
        cat "$1" >&2
    fi
}

build_preset() { # PRESET [TARGET...]
    local folder log
    folder=$(build_folder "$1")
    log="$folder/configure.log"
    if [[ ! -d $folder ]]; then need_room 1500 "$root" "Building"; fi
    mkdir -p "$folder"
    (cd "$root" && cmake --preset "$1") >"$log" 2>&1 || {
        tell_missing "$log"
        fail "configuring the $1 build failed; all of what CMake said is in $log."
    }
    cmake --build "$folder" -j "$(job_count)" ${2:+--target "${@:2}"} >&2 || fail "the $1 build failed."
}
