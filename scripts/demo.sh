# Shows the main job: a host starts the services and hears back through its observer.

icon_categories=(archive file audio picture video)
driver_files=(dokan1.sys dokan1.dll dokanfuse1.dll)
notifications=('SendLocalMessage(9)' 'ConnectNotify(10)' 'DisconnectNotify(11)'
    'ReconnectNotify(12)' 'LinkTypeQuery(13)' 'StatusNotify(14)' 'ErrorNotify(15)'
    'DiskNameNotify(16)' 'UpdateWindowsExplore(17)' 'ExploreFlushNotify(18)')

command_demo() {
    build_windows
    make_prefix_template
    local prefix log=$build_dir/demo status=0 shown=0
    prefix=$(new_prefix demo)
    rm -rf "$log"
    mkdir -p "$log"
    lay_out_install_folder "$prefix/drive_c/Plenx" "$log"
    run_demo_host "$prefix" "$log" || status=$?
    WINEPREFIX=$prefix timeout 30 wineserver -w || true
    show_timeline "$prefix" "$log" || shown=$?
    if [ $status -ne 0 ]; then
        echo
        sed 's/^/  /' "$log/host-errors.txt" >&2
        echo "The host's expectations did not hold (exit $status). Its files are in build/demo." >&2
    fi
    [ $shown -eq 0 ] || status=1
    echo
    check_what_happened "$log" || status=1
    echo
    check_what_is_left "$prefix" || status=1
    drop_prefix "$prefix"
    echo
    if [ $status -ne 0 ]; then
        fail "the demo did not show all that it should; its logs are in build/demo"
    fi
    echo "All of it happened. The logs are in build/demo."
}

# Makes the folder that a host's installer makes, with the service program, the driver's files and the
# icon folders, and the newer driver files of its updater under "upgrade".
lay_out_install_folder() {
    local app=$1/App category
    mkdir -p "$app/upgrade" "$1/Data"
    cp "$dist_dir/bin/plenxservice.exe" "$app/"
    # The services append to one log outside the working folder, which the library removes.
    printf "log = '%s'\n" "$(windows_path "$2/service.log")" >"$app/plenxservice.toml"
    local file
    for file in "${driver_files[@]}"; do
        cp "$dist_dir/bin/$file" "$app/"
        cp "$dist_dir/bin/upgrade/$file" "$app/upgrade/"
    done
    for category in "${icon_categories[@]}"; do
        mkdir -p "$app/res/plenx/icon/$category"
    done
}

run_demo_host() {
    echo "Running the host's script, kit/host/demo/demo.plenx, under Wine:"
    echo
    (cd "$dist_dir/bin" && WINEPREFIX=$1 \
        PLENX_LOG_FILE="$(windows_path "$2/library.log")" \
        timeout -k 10 120 wine plenxkit.exe host --install 'C:\Plenx\App' --data 'C:\Plenx\Data' \
        --third demo --flag --json --timeout 60 --script "$(windows_path "$root/kit/host/demo/demo.plenx")" \
        >"$2/host.jsonl" 2>"$2/host-errors.txt" </dev/null)
}

windows_path() {
    echo "Z:${1//\//\\}"
}

# Shows what the host printed and both logs as one text, and keeps it beside them.
show_timeline() {
    local logs
    logs=$(windows_path "$2")
    WINEPREFIX=$1 timeout -k 10 60 wine "$dist_dir/bin/plenxkit.exe" trace --text "$logs\\library.log" \
        --host "$logs\\host.jsonl" --service "$logs\\service.log" >"$2/timeline.txt" </dev/null || return
    WINEPREFIX=$1 timeout 30 wineserver -w || true
    cat "$2/timeline.txt"
}

# check TEXT COMMAND...
check() {
    local text=$1
    shift
    if "$@"; then
        echo "  ok    $text"
    else
        echo "  FAIL  $text"
        checks_failed=1
    fi
}

check_what_happened() {
    local notification checks_failed=0
    echo "What the logs say:"
    for notification in "${notifications[@]}"; do
        check "the library answered a service's $notification" \
            grep -q "Manager answered $notification result:0" "$1/service.log"
    done
    check "the link query brought the observer's 7 back" \
        grep -q 'Manager answered LinkTypeQuery(13) result:0 reply:7' "$1/service.log"
    check "the service saw the new locale at its next start" \
        grep -q 'pc received SetStringConfig(7) cfgType:1 value:"de_DE"' "$1/service.log"
    check "Explorer was asked to refresh the drive" \
        grep -qF 'sh change notify end' "$1/library.log"
    return $checks_failed
}

check_what_is_left() {
    local prefix=$1 app=$1/drive_c/Plenx/App data=$1/drive_c/Plenx/Data
    local file category checks_failed=0
    echo "What was left behind after the host's exit:"
    check "the PC service is uninstalled" not is_service "$prefix" PlenxPcSvc
    check "the phone service is uninstalled" not is_service "$prefix" PlenxPhoneSvc
    check "the driver is registered" is_service "$prefix" Dokan1
    check "the working folder is gone" not test -e "$data/plenx"
    for category in "${icon_categories[@]}"; do
        check "desktop.ini names the icon of $category" \
            grep -q "icon\\\\$category\\\\$category.ico,0" "$app/res/plenx/icon/$category/desktop.ini"
    done
    for file in "${driver_files[@]}"; do
        check "$file is the newer one" cmp -s "$app/$file" "$dist_dir/bin/upgrade/$file"
        check "no $file is left in upgrade" not test -e "$app/upgrade/$file"
    done
    return $checks_failed
}

not() { ! "$@"; }

is_service() {
    grep -qi "Services\\\\\\\\$2\\]" "$1/system.reg"
}
