# Measures the library beside its peers.

bench_build=$build_dir/bench-native
bench_dir=$build_dir/bench
bench_programs=(messages log observers queue c_interface)

# command_bench [--quick] [--json FILE] [native | windows]
command_bench() {
    local quick=false world=all
    local -a table=()
    while [ $# -gt 0 ]; do
        case $1 in
        --quick) quick=true ;;
        --json)
            [ $# -gt 1 ] || fail "'bench' needs the name of a file after --json"
            table+=(--json "$2")
            shift
            ;;
        native | windows) world=$1 ;;
        *) fail "'bench' does not know '$1'; it takes --quick, --json FILE, native and windows" ;;
        esac
        shift
    done
    if $quick; then
        table+=(--quick)
    fi
    need_packages "${bench_packages[@]}"
    rm -rf "$bench_dir"
    mkdir -p "$bench_dir"
    [ $world = windows ] || bench_native
    [ $world = native ] || bench_windows
    python3 -B bench/table.py "${table[@]}" "$bench_dir"/*.json
}

compile_native_benches() {
    configure "$bench_build" -DPLENX_BENCH=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
    step "build the native benchmarks" ninja -C "$bench_build" bench
}

# Runs every benchmark in an order that changes from one repetition to the next, then all once more to
# count the calls of the allocator.
bench_native() {
    local program folder
    # The runs are many and short, so that whatever disturbs the machine for a while affects all
    # contenders alike.
    local -a often=(--benchmark_repetitions=484 --benchmark_min_time=0.001)
    if $quick; then
        often=(--benchmark_repetitions=9 --benchmark_min_time=0.002)
        export PLENX_BENCH_QUICK=1
    fi
    compile_native_benches
    for program in "${bench_programs[@]}"; do
        folder=$bench_build/bench/native/$program
        step "measure natively: $program" in_folder "$bench_dir" "$folder/bench_$program" \
            --benchmark_enable_random_interleaving=true "${often[@]}" \
            --benchmark_out="$bench_dir/$program.json"
        step "count allocations: $program" in_folder "$bench_dir" env \
            LD_PRELOAD="$bench_build/bench/native/libbench_count_allocations.so" \
            "$folder/bench_$program" --benchmark_min_time=0 --benchmark_filter=-^12 \
            --benchmark_out="$bench_dir/$program-allocations.json"
    done
}

# in_folder FOLDER COMMAND...
in_folder() (
    cd "$1"
    shift
    timeout 1200 "$@"
)

# The programs measure the build in build/windows, each in its own prefix.
bench_windows() {
    local program name prefix
    local -a how=()
    if $quick; then
        how=(--quick)
    fi
    compile_windows bench_windows
    make_prefix_template
    for program in "$windows_build"/bin/*_bench.exe; do
        name=$(basename "$program" .exe)
        prefix=$(new_prefix "$name")
        step "measure under Wine: ${name%_bench}" env WINEPREFIX="$prefix" \
            timeout -k 10 1200 wine "$program" "${how[@]}" \
            --json "$(windows_path "$bench_dir/$name.json")"
        drop_prefix "$prefix"
    done
    bench_node
}
