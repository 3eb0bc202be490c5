# All tests, and the closing line that counts them.

windows_test_seconds=900
windows_jobs=3        # at a time: they mostly wait
long_windows_tests=(endings_test system_test soak_test)  # begin first, so that none is left alone
show_each_test=false  # under Wine, for runs of many minutes
failure_lines='^[^ ].*(Failure|FAILED|WARNING: ThreadSanitizer|ERROR: AddressSanitizer|runtime error)'
failure_lines+='|\*\*\*(Failed|Timeout|Exception)'
all_passed=0 all_failed=0 all_skipped=0

test_native() {
    local flavours=("$@") flavour
    [ ${#flavours[@]} -gt 0 ] || flavours=(plain address thread)
    for flavour in "${flavours[@]}"; do
        build_native "$flavour"
        run_native "$flavour"
    done
}

# The public header stands alone, for every compiler that a host may use here.
check_public_header() {
    local compiler
    for compiler in g++ clang++ x86_64-w64-mingw32-g++-posix; do
        "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ \
            include/plenxsdk/plenx_manager.h
    done
}

run_native() {
    local name=native-$1 status=0
    local log=$log_dir/$name-tests.txt
    forget_counts "$build_dir/$name"
    (cd "$build_dir/$name" && ctest -j"$(nproc)" --output-on-failure \
        --output-junit "$results_dir/$name.xml") >"$log" 2>&1 </dev/null || status=$?
    report "$name" "native tests, $1" $status "$log"
}

# report NAME TEXT STATUS LOG: the count of a run, and its failures. A run that failed without a
# failed test (it crashed, or ended badly) counts as one failure more.
report() {
    local xml=$results_dir/$1.xml passed=0 failed=0 skipped=0
    if [ -e "$xml" ]; then
        read -r passed failed skipped < <(count_results "$xml")
    fi
    if [ "$3" -ne 0 ]; then
        echo "  failures in $2 (exit $3):"
        grep -aE "$failure_lines" "$4" | head -n 40 || true
        echo "  (all of it: ${4#"$root"/})"
        [ "$failed" -ne 0 ] || failed=1
    fi
    echo "  $2: $passed passed, $failed failed, $skipped skipped"
    all_passed=$((all_passed + passed))
    all_failed=$((all_failed + failed))
    all_skipped=$((all_skipped + skipped))
}

all_windows_tests() {
    (cd "$windows_build/bin" && ls ./*_test.exe | sed 's|^\./||; s|\.exe$||')
}

test_windows() {
    compile_windows all
    make_prefix_template
    local -a names=("$@")
    if [ ${#names[@]} -eq 0 ]; then
        # Each once, the long ones in front.
        mapfile -t names < <({ printf '%s\n' "${long_windows_tests[@]}"; all_windows_tests; } |
            awk '!seen[$0]++')
    fi
    local name
    local -A running=()  # process to name
    for name in "${names[@]}"; do
        [ -e "$windows_build/bin/$name.exe" ] || fail "no such test program: $name"
        [ ${#running[@]} -lt $windows_jobs ] || finish_windows_test
        run_windows_test "$name" &
        running[$!]=$name
    done
    while [ ${#running[@]} -gt 0 ]; do
        finish_windows_test
    done
}

# Waits for the next one of `running` to end.
finish_windows_test() {
    local process name status=0
    wait -n -p process "${!running[@]}" || status=$?
    name=${running[$process]}
    unset "running[$process]"
    report "windows-$name" "$name under Wine" $status "$log_dir/windows-$name.txt"
}

# A test program runs in the folder of everything that was built, in a prefix of its own.
run_windows_test() {
    local prefix run status=0
    local log=$log_dir/windows-$1.txt xml=$results_dir/windows-$1.xml
    prefix=$(new_prefix "$1")
    : >"$log"
    (cd "$windows_build/bin" && WINEPREFIX=$prefix exec timeout -k 10 $windows_test_seconds \
        wine "$1.exe" --gtest_output=xml:"Z:${xml//\//\\}") >"$log" 2>&1 </dev/null &
    run=$!
    if $show_each_test; then
        tail -n +1 -f --pid=$run "$log" |
            grep --line-buffered -aE '^\[ *(RUN|OK|FAILED) ' | sed 's/^/    /' || true
    fi
    wait $run || status=$?
    drop_prefix "$prefix"
    return $status
}

test_dialogue() {
    local prefix status=0
    prefix=$(new_prefix dialogue)
    timeout -k 10 $windows_test_seconds python3 tests/windows/kit/host/dialogue.py \
        "$windows_build/bin" "$prefix" || status=$?
    drop_prefix "$prefix"
    return $status
}

# count_results FILE: "passed failed skipped". The head of a JUnit file counts them; GoogleTest's
# does not count skipped tests, but marks them.
count_results() {
    awk -v RS='>' '
        function attribute(name) {
            if (match($0, "[ \t\n]" name "=\"[0-9]+\"")) {
                value = substr($0, RSTART, RLENGTH)
                gsub(/[^0-9]/, "", value)
                return value + 0
            }
            return 0
        }
        /<testsuites?[ \n]/ && !head {
            head = 1
            tests = attribute("tests")
            failed = attribute("failures") + attribute("errors")
            skipped = attribute("skipped") + attribute("disabled")
        }
        /<testcase[ \n]/ && /result="skipped"/ { skipped += 1 }
        END { print tests - failed - skipped, failed + 0, skipped + 0 }' "$1"
}

command_test() {
    results_dir=$build_dir/test-results
    rm -rf "$results_dir"
    mkdir -p "$results_dir"
    local which=${1:-all}
    [ $# -gt 0 ] && shift
    case $which in
    all)
        need_packages "${native_packages[@]}" "${windows_packages[@]}" "${demo_packages[@]}" \
            "${coverage_packages[@]}" "${mutate_packages[@]}" "${docs_packages[@]}" \
            "${browser_packages[@]}" "${package_packages[@]}" "${lint_packages[@]}"
        step "check the format of the sources" check_format
        step "compile the public header alone" check_public_header
        step "hold the table of tests against the tests" python3 docs/check_conformance.py
        build_docs
        test_native
        check_native_coverage
        test_browser
        step "see the tests notice mutants" check_some_mutants
        test_windows
        step "type at the host's prompt" test_dialogue
        step "hold the host's JSON against its schema" /usr/bin/python3 \
            docs/check_plenxhost_json.py "$windows_build/bin/plenxhost.jsonl"
        test_package
        ;;
    package)
        command_docs
        test_package
        ;;
    native) test_native "$@" ;;
    windows) test_windows "$@" ;;
    browser) test_browser ;;
    *)
        echo "plenx: test what? all, native, windows, browser or package" >&2
        exit 2
        ;;
    esac
    echo "$all_passed passed, $all_failed failed, $all_skipped skipped"
    [ $all_failed -eq 0 ] && [ $all_passed -gt 0 ]
}
