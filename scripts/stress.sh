# Runs the long forms of tests that './plenx test' runs briefly.

stress_pools=100000
stress_endings=300
stress_messages=10000

mutate_packages=("${native_packages[@]}" python3)

# Tests the tests: how many of COUNT small changes of the sources do they notice?
command_mutate() {
    need_packages "${mutate_packages[@]}"
    build_native plain
    python3 tests/mutation/mutate.py "$build_dir/native-plain" --count "${1:-420}" \
        --seed "${2:-1}" --jobs "$(nproc)"
    mutate_what_is_judged
}

# The judge of service programs must notice what is wrong with one.
mutate_what_is_judged() {
    python3 tests/mutation/mutate_judge.py "$build_dir/native-plain" --jobs "$(nproc)"
}

check_some_mutants() {
    python3 tests/mutation/mutate.py "$build_dir/native-plain" --brief --count "${1:-8}" --seed 2 \
        --jobs "$(nproc)"
}

command_stress() {
    forget_results
    local flavour
    for flavour in plain address thread; do
        build_native "$flavour"
        echo "  $stress_pools thread pools, $flavour"
        step "destroy pools, $flavour" env PLENX_TEST_POOLS=$stress_pools \
            "$build_dir/native-$flavour/tests/unit/common/common_test" \
            --gtest_filter='ThreadPool.*PoolsAreDestroyed*WithoutALostWakeUp'
    done
    windows_test_seconds=7200
    show_each_test=true
    windows_jobs=1
    export PLENX_TEST_ENDINGS=$stress_endings PLENX_TEST_HOSTILE=$stress_messages
    echo "  $stress_endings hosts that end in each way, then $stress_messages messages each way, then" \
        "broken messages to every service that misbehaves"
    test_windows endings_test hostile_test kit_judge_test kit_judge_answers_test
    close_results
}
