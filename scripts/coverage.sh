# Counts the lines and branches of src/ that the tests run, in both worlds.

coverage_packages=(gcovr python3)
coverage_windows_build=$build_dir/windows-coverage

# count_lines GCOV OBJECTS OUT.json
count_lines() {
    gcovr --root . --filter 'src/' --gcov-executable "$1" \
        --exclude-throw-branches --exclude-unreachable-branches --json "$3" "$2"
}

forget_counts() {
    find "$1" -name '*.gcda' -delete
}

# After a run of the native tests, flavour plain.
count_native() {
    need_packages "${coverage_packages[@]}"
    step "count the lines run natively" count_lines gcov \
        "$build_dir/native-plain/tests/unit/CMakeFiles/plenxsdk_native.dir" \
        "$results_dir/coverage-native.json"
}

check_native_coverage() {
    count_native
    step "hold the lines that are not run against their reasons" \
        python3 tests/coverage/check.py "$results_dir/coverage-native.json"
}

command_coverage() {
    forget_results
    test_native plain
    count_native
    windows_build=$coverage_windows_build
    windows_options=(-DPLENX_COVERAGE=ON)
    windows_jobs=1  # programs that run at once would spoil each other's counts there
    mkdir -p "$windows_build"
    forget_counts "$windows_build"
    test_windows
    step "count the lines run under Wine" count_lines x86_64-w64-mingw32-gcov-posix \
        "$windows_build/src/CMakeFiles/plenxsdk.dir" "$results_dir/coverage-windows.json"
    python3 tests/coverage/check.py "$results_dir"/coverage-{native,windows}.json
}
