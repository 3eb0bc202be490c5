# All tests, and the closing line that counts them.

windows_test_seconds=600

test_native() {
    local flavours=("$@") flavour
    [ ${#flavours[@]} -gt 0 ] || flavours=(plain address thread)
    for flavour in "${flavours[@]}"; do
        build_native "$flavour"
        run_native "$flavour"
    done
}

run_native() {
    local xml=$results_dir/native-$1.xml log=$log_dir/native-tests-$1.txt
    if ! (cd "$build_dir/native-$1" && ctest -j"$(nproc)" --output-on-failure --output-junit "$xml") \
        >"$log" 2>&1 </dev/null; then
        echo "  failures in the native tests, $1:"
        grep -aE '^[^ ].*(Failure|FAILED|WARNING: ThreadSanitizer|ERROR: AddressSanitizer|runtime error)|\*\*\*(Failed|Timeout|Exception)' \
            "$log" | head -n 40
        echo "  (all of it: ${log#"$root"/})"
    fi
    show_count "native tests, $1" "$xml"
}

test_windows() {
    build_windows all
    make_prefix_template
    local -a names=("$@")
    if [ ${#names[@]} -eq 0 ]; then
        mapfile -t names < <(cd "$windows_build/bin" && ls ./*_test.exe | sed 's|^\./||; s|\.exe$||')
    fi
    local name
    for name in "${names[@]}"; do
        run_windows_test "$name"
    done
}

# A test program runs in the folder of everything that was built, in a prefix of its own.
run_windows_test() {
    local name=$1 prefix status=0
    local xml=$results_dir/windows-$name.xml log=$log_dir/windows-$name.txt
    [ -e "$windows_build/bin/$name.exe" ] || fail "no such test program: $name"
    prefix=$(new_prefix "$name")
    (cd "$windows_build/bin" && WINEPREFIX=$prefix timeout -k 10 $windows_test_seconds \
        wine "$name.exe" --gtest_output=xml:"Z:${xml//\//\\}") >"$log" 2>&1 </dev/null || status=$?
    if [ $status -ne 0 ]; then
        echo "  failures in $name (exit $status):"
        grep -aE 'Failure|FAILED' "$log" | head -n 40
        echo "  (all of it: ${log#"$root"/})"
        [ -e "$xml" ] || echo '<testsuites tests="1" failures="1" skipped="0">' >"$xml"
    fi
    drop_prefix "$prefix"
    show_count "$name under Wine" "$xml"
}

# count_results FILE...: "passed failed skipped", from the head of each JUnit file
count_results() {
    cat "$@" | awk '
        function attribute(name) {
            if (match($0, " " name "=\"[0-9]+\"")) {
                value = substr($0, RSTART, RLENGTH)
                gsub(/[^0-9]/, "", value)
                return value + 0
            }
            return 0
        }
        /<testsuites / { tests += attribute("tests"); in_suites = 1
                         failed += attribute("failures") + attribute("errors")
                         skipped += attribute("skipped") + attribute("disabled") }
        /<testsuite / && !in_suites { tests += attribute("tests")
                         failed += attribute("failures"); skipped += attribute("skipped") }
        /result="skipped"/ { skipped += 1 }
        END { print tests - failed - skipped, failed + 0, skipped + 0 }'
}

show_count() {
    local passed failed skipped
    read -r passed failed skipped < <(count_results "$2")
    echo "  $1: $passed passed, $failed failed, $skipped skipped"
}

command_test() {
    results_dir=$build_dir/test-results
    rm -rf "$results_dir"
    mkdir -p "$results_dir"
    local which=${1:-all}
    [ $# -gt 0 ] && shift
    case $which in
    all)
        test_native
        test_windows
        ;;
    native) test_native "$@" ;;
    windows) test_windows "$@" ;;
    *)
        echo "plenx: test what? all, native or windows" >&2
        exit 2
        ;;
    esac
    local file passed=0 failed=0 skipped=0 p f s
    for file in "$results_dir"/*.xml; do
        read -r p f s < <(count_results "$file")
        passed=$((passed + p)) failed=$((failed + f)) skipped=$((skipped + s))
    done
    echo "$passed passed, $failed failed, $skipped skipped"
    [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}
