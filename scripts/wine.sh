# Wine prefixes. Service names and endpoints are per prefix, so every test program gets a fresh
# one, copied from a template.

wine_dir=$build_dir/wine
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY
# Wine 10 looks for a Wayland display in XDG_RUNTIME_DIR, and complains on the error output when that is
# not set.
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    mkdir -p -m 700 "$build_dir/run"
    export XDG_RUNTIME_DIR=$build_dir/run
fi

make_prefix_template() {
    local template=$wine_dir/template
    if [ ! -e "$template/.ready" ]; then
        rm -rf "$template"
        mkdir -p "$wine_dir"
        step "make a Wine prefix" env WINEPREFIX="$template" timeout 120 wineboot -i
        step "settle the Wine prefix" env WINEPREFIX="$template" timeout 60 wineserver -w
        touch "$template/.ready"
    fi
}

# new_prefix NAME: prints the folder of a fresh prefix. Its 700 MB of DLLs are links, which costs a
# fraction of a copy. The files that Wine changes in place are copied.
new_prefix() {
    local prefix=$wine_dir/$1 template=$wine_dir/template
    drop_prefix "$prefix"
    cp -al "$template" "$prefix"
    cp -a --remove-destination "$template"/*.reg "$prefix/"
    cp -a --remove-destination "$template"/drive_c/windows/*.ini "$prefix/drive_c/windows/"
    echo "$prefix"
}

drop_prefix() {
    if [ -d "$1" ]; then
        WINEPREFIX=$1 timeout 20 wineserver -k >/dev/null 2>&1 || true
        rm -rf "$1"
    fi
}

# keep_wine_up PREFIX: lets Wine stay up for a minute after a command, until drop_prefix, because its start
# takes eight times as long as a small command. It must come before the first command, whose output would
# have no end as long as Wine is up.
keep_wine_up() {
    WINEPREFIX=$1 wineserver -p60
    WINEPREFIX=$1 wine cmd /c exit
} >/dev/null 2>&1 </dev/null
