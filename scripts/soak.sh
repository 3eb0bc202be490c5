# Runs a host process for a long time, with random calls against services that misbehave.

soak_seconds=3600

# command_soak [SECONDS [SEED]]: shows the lines of the run while it runs, and its closing table.
command_soak() {
    local seconds=${1:-$soak_seconds} seed=${2:-$(date +%s)} prefix run status=0
    local log=$log_dir/soak.txt kept=$build_dir/soak
    [[ $seconds =~ ^[0-9]+$ && $seed =~ ^[0-9]+$ ]] || fail "'soak' needs whole numbers for the seconds and the seed"
    compile_windows soak_test
    make_prefix_template
    prefix=$(new_prefix soak)
    # This uses no pipe, because Wine's own processes would keep it open after the run.
    (cd "$windows_build/bin" && WINEPREFIX=$prefix PLENX_SOAK_SECONDS=$seconds \
        PLENX_SOAK_SEED=$seed exec timeout -k 10 $((seconds + 900)) \
        wine soak_test.exe --gtest_brief=1 --gtest_filter='Soak.*') >"$log" 2>&1 </dev/null &
    run=$!
    tail -n +1 -f --pid=$run "$log"
    wait $run || status=$?
    rm -rf "$kept"
    if [ $status -ne 0 ]; then
        cp -r "$prefix/drive_c/plenx-soak-logs" "$kept" || true
    fi
    drop_prefix "$prefix"
    [ $status -eq 0 ] ||
        fail "the soak has failed with seed $seed; the library's log is in ${kept#"$root"/}"
}
