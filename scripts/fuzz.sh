# Runs libFuzzer on all code that takes bytes from a peer.

fuzz_packages=("${base_packages[@]}" clang libclang-rt-dev googletest)
fuzz_build=$build_dir/fuzz
fuzz_targets=(reader writer server group_name decoder c_interface)
fuzz_found=$fuzz_build/found     # inputs that reach something new
fuzz_broken=$fuzz_build/broken   # inputs that break something

build_fuzz() {
    need_packages "${fuzz_packages[@]}"
    configure "$fuzz_build" -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
        -DPLENX_FUZZ=ON -DPLENX_SANITIZE=address,undefined \
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1"
    step "build the fuzz targets" ninja -C "$fuzz_build" "${fuzz_targets[@]/#/fuzz_}"
}

fuzz_log() {
    echo "$log_dir/fuzz-$1.txt"
}

# These inputs are kept; the build has unpacked them.
fuzz_corpus() {
    echo "$fuzz_build/tests/fuzz/corpus/$1"
}

# fuzz_one TARGET SECONDS
fuzz_one() {
    mkdir -p "$fuzz_found/$1" "$fuzz_broken"
    ASAN_OPTIONS=allocator_may_return_null=1 "$fuzz_build/tests/fuzz/fuzz_$1" \
        -max_total_time="$2" -max_len=4096 -print_final_stats=1 \
        -artifact_prefix="$fuzz_broken/$1-" \
        "$fuzz_found/$1" "$(fuzz_corpus "$1")" >"$(fuzz_log "$1")" 2>&1 </dev/null
}

# fuzz_row TARGET STATE: prints a row from the last line that libFuzzer has printed.
fuzz_row() {
    local line
    line=$(grep -aE '^#[0-9]+.* cov: ' "$(fuzz_log "$1")" 2>/dev/null | tail -n 1 || true)
    echo "$line" | awk -v target="$1" -v state="$2" '{
        executions = $1; sub(/#/, "", executions)
        for (i = 1; i < NF; ++i) { if ($i ~ /:$/) value[$i] = $(i + 1) }
        printf "  %-11s %12s %8s %9s %8s  %s\n", target, executions, value["cov:"],
            value["ft:"], value["corp:"], state }'
}

fuzz_head() {
    printf '  %-11s %12s %8s %9s %8s\n' target executions edges features inputs
}

# Runs as many targets at a time as the machine has cores, and prints a line for each every minute.
fuzz_all() {
    local seconds=$1 status=0 target
    local -a waiting=("${fuzz_targets[@]}")
    local -A running=()
    fuzz_head
    while [ ${#waiting[@]} -gt 0 ] || [ ${#running[@]} -gt 0 ]; do
        while [ ${#waiting[@]} -gt 0 ] && [ ${#running[@]} -lt "$(nproc)" ]; do
            fuzz_one "${waiting[0]}" "$seconds" &
            running[${waiting[0]}]=$!
            waiting=("${waiting[@]:1}")
        done
        local next_report=$((SECONDS + 60))
        while [ $SECONDS -lt $next_report ] && all_alive "${running[@]}"; do
            sleep 0.5
        done
        for target in "${!running[@]}"; do
            if kill -0 "${running[$target]}" 2>/dev/null; then
                [ $SECONDS -lt $next_report ] || fuzz_row "$target" "running"
            elif wait "${running[$target]}"; then
                unset "running[$target]"
                fuzz_row "$target" "done, nothing breaks"
            else
                unset "running[$target]"
                fuzz_row "$target" "BROKEN, see build/log/fuzz-$target.txt"
                status=1
            fi
        done
    done
    return $status
}

all_alive() {
    local process
    for process in "$@"; do
        kill -0 "$process" 2>/dev/null || return 1
    done
}

# The smallest set of inputs that reaches everything that all known ones reach becomes the corpus.
fuzz_keep() {
    local target
    for target in "${fuzz_targets[@]}"; do
        local fresh=$fuzz_build/fresh/$target
        rm -rf "$fresh"
        mkdir -p "$fresh" "$fuzz_found/$target"
        step "choose the inputs of $target" "$fuzz_build/tests/fuzz/fuzz_$target" -merge=1 \
            "$fresh" "$(fuzz_corpus "$target")" "$fuzz_found/$target"
        step "pack the inputs of $target" python3 tests/fuzz/pack.py "$fresh" \
            "tests/fuzz/corpus/$target.zip"
        echo "  $target: $(find "$fresh" -type f | wc -l) inputs kept"
    done
}

command_fuzz() {
    local what=${1:-}
    if [ "$what" = keep ]; then
        build_fuzz
        fuzz_keep
    elif [[ $what =~ ^[1-9][0-9]*$ ]]; then
        build_fuzz
        fuzz_all "$what" || fail "the inputs that break something are in ${fuzz_broken#"$root"/}"
        echo "No input breaks anything. './plenx fuzz keep' adds new inputs to the corpus."
    else
        echo "plenx: 'fuzz' needs the seconds for each target, or the word keep" >&2
        exit 2
    fi
}
