# Runs the same commands on a bare system of another Debian release, in a folder of this machine.

on_dir=$build_dir/on
# A clone needs these packages before ./plenx installs the rest.
on_first_packages=ca-certificates,git

declare -A on_codenames=([12]=bookworm [13]=trixie)

# command_on RELEASE COMMAND...: runs the command on the committed tree, in a folder of its own
# there.
command_on() {
    local release=${1:-} codename system status=0
    codename=${on_codenames[${release:-none}]:-}
    if [ -z "$codename" ] || [ $# -lt 2 ]; then
        echo "plenx: 'on' needs a release of Debian, 12 or 13, and a command: ./plenx on 13 test" >&2
        exit 2
    fi
    shift
    system=$on_dir/$release
    local -a as_root=()
    need_packages debootstrap git
    become_root "make a system in a folder"
    mkdir -p "$on_dir"
    exec 9>"$on_dir/$release.lock"
    flock -n 9 || fail "another './plenx on $release' is at work in ${system#"$root"/}"
    make_system "$codename" "$system"
    step "bring the committed tree to Debian $release" bring_tree "$system"
    in_system "$system" ./plenx "$@" || status=$?
    if [ $status -ne 0 ]; then
        echo "On Debian $release, './plenx $*' ended with exit code $status." >&2
        echo "What it wrote is in ${system#"$root"/}/root/plenxsdk/build." >&2
    fi
    return $status
}

# make_system CODENAME FOLDER: makes the system once. It keeps the packages that commands have
# installed there.
make_system() {
    local codename=$1 system=$2 sources=$on_dir/$1.sources
    if [ ! -e "$system/root/.ready" ]; then
        [ -n "$(debian_sources)" ] || step "read the package lists" "${as_root[@]}" apt-get update
        debian_sources | sources_for "$codename" >"$sources"
        [ -s "$sources" ] || fail "apt's sources on this machine name no mirror of Debian"
        "${as_root[@]}" rm -rf "$system"
        step "make a bare system of Debian's $codename" fill_system "$codename" "$system" "$sources"
    fi
    # The machine may have moved to another network since then.
    "${as_root[@]}" cp -L /etc/resolv.conf /etc/hosts "$system/etc/"
    step "trust the certificates that this machine trusts" bring_certificates "$system"
}

# A network may have a proxy with a certificate of its own. npm has to go through that proxy, too.
bring_certificates() {
    local folder=/usr/local/share/ca-certificates
    "${as_root[@]}" rm -rf "$1$folder"
    [ ! -d "$folder" ] || "${as_root[@]}" cp -rL "$folder" "$1$folder"
    "${as_root[@]}" chroot "$1" update-ca-certificates --fresh
}

fill_system() {
    local codename=$1 system=$2 sources=$3 mirror
    mirror=$(awk '$3 == "'"$codename"'" { print $2; exit }' "$sources")
    "${as_root[@]}" env $(proxy_setting http) $(proxy_setting https) debootstrap --variant=minbase \
        --include="$on_first_packages" "$codename" "$system" "$mirror"
    "${as_root[@]}" cp "$sources" "$system/etc/apt/sources.list"
    apt-config dump | grep -iE '^Acquire::(http|https|ftp|Check|Retries)' |
        "${as_root[@]}" tee "$system/etc/apt/apt.conf.d/90machine" >/dev/null || true
    "${as_root[@]}" touch "$system/root/.ready"
}

# proxy_setting SCHEME: prints apt's proxy for a program that reads the environment.
proxy_setting() {
    local proxy=
    eval "$(apt-config shell proxy "Acquire::$1::Proxy")"
    [ -z "$proxy" ] || echo "$1_proxy=$proxy"
}

# Prints the sources that apt reads here from Debian itself, one "mirror suite codename" a line.
debian_sources() {
    apt-get indextargets --format '$(ORIGIN) $(COMPONENT) $(REPO_URI) $(RELEASE) $(CODENAME)' \
        'Created-By: Packages' | awk '$1 == "Debian" && $2 == "main" { print $3, $4, $5 }' | sort -u
}

# sources_for CODENAME: prints the same mirrors' suites of another release. A suite may have the
# name "stable" here, so its codename counts.
sources_for() {
    awk -v wanted="$1" '{
        suite = $3
        sub(/^[a-z]+/, wanted, suite)
        if (suite ~ /^[a-z]+$/ && $2 ~ /-updates$/) { suite = suite "-updates" }
        if (suite ~ /^[a-z]+(-updates|-security)?$/) { print "deb", $1, suite, "main" }
    }' | sort -u
}

# Brings the last commit into a clone. The next time, the clone fetches only the new commits.
bring_tree() {
    local system=$1 bundle=$on_dir/tree.bundle
    git -C "$root" bundle create -q "$bundle" HEAD
    "${as_root[@]}" cp "$bundle" "$system/root/tree.bundle"
    # shellcheck disable=SC2016
    in_system "$system" sh -c 'git init -q . && git fetch -q ../tree.bundle HEAD &&
        git -c advice.detachedHead=false checkout -q --force --detach FETCH_HEAD'
}

# in_system FOLDER COMMAND...: runs the command as root in the clone. The mounts live in a namespace
# of their own and vanish with its last process, however that ends. All its processes end with the
# first one.
in_system() {
    local system=$1 name
    local -a settings=(HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8)
    shift
    for name in TERM CI http_proxy https_proxy no_proxy; do
        [ -z "${!name:-}" ] || settings+=("$name=${!name}")
    done
    # shellcheck disable=SC2016
    "${as_root[@]}" unshare --mount --pid --fork --kill-child sh -c '
        system=$1
        shift
        mount --rbind /dev "$system/dev" && mount --rbind /sys "$system/sys" &&
            mount -t proc proc "$system/proc" && mkdir -p "$system/root/plenxsdk" || exit 125
        exec chroot "$system" env -i "$@"' sh \
        "$system" "${settings[@]}" sh -c 'cd /root/plenxsdk && exec "$@"' sh "$@"
}
