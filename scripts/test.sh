# Runs all tests and prints the closing line that counts them.

windows_test_seconds=900
windows_jobs=4        # at a time, because they mostly wait
# These begin first, so that none of them is left running alone at the end. The last of them need the
# cores most, so they wait until the package's tests are nearly done.
long_windows_tests=(system_test soak_test kit_judge_life_test endings_test
    kit_judge_answers_test kit_judge_test kit_scenario_test kit_host_test)
# Other commands run these at length.
brief_endings=10
brief_mutants=3
quick_windows_test=system_test
quick_windows_filter='Lifecycle.*'
show_each_test=false  # under Wine, for runs of many minutes
failure_lines='^[^ ].*(Failure|FAILED|WARNING: ThreadSanitizer|ERROR: AddressSanitizer|runtime error)'
failure_lines+='|\*\*\*(Failed|Timeout|Exception)'

forget_results() {
    results_dir=$build_dir/test-results
    rm -rf "$results_dir"
    mkdir -p "$results_dir"
    : >"$results_dir/counts"
}

# count PASSED FAILED SKIPPED: writes the numbers to a file, because lanes cannot add to each
# other's variables.
count() {
    echo "$*" >>"$results_dir/counts"
}

# Prints the closing line and returns whether everything passed.
close_results() {
    echo "  The tests took $SECONDS s."
    awk '{ passed += $1; failed += $2; skipped += $3 }
        END {
            printf "%d passed, %d failed, %d skipped\n", passed, failed, skipped
            exit failed > 0 || passed == 0
        }' "$results_dir/counts"
}

# in_lane FUNCTION ARGUMENT...: runs the function beside the other lanes. A step that fails ends
# only its own lane, and a lane waits for those that it has begun.
in_lane() {
    (
        lanes=()
        trap finish_lanes EXIT
        "$@"
    ) &
    lanes+=($!)
}

# A lane that a step has ended counts as one failure; the step has said why.
finish_lanes() {
    local lane
    for lane in "${lanes[@]}"; do
        wait "$lane" || count 0 1 0
    done
    lanes=()
}
lanes=()

# Lanes do not hear Ctrl-C themselves. A shell has made this process the leader of its process group.
end_lanes() {
    local prefix
    trap - INT TERM
    kill -TERM -- "-$$" 2>/dev/null || true
    for prefix in "$wine_dir"/*; do
        WINEPREFIX=$prefix timeout 20 wineserver -k 2>/dev/null || true
    done
    exit 130
}

test_native() {
    local flavours=("$@") flavour
    [ ${#flavours[@]} -gt 0 ] || flavours=(plain address thread)
    for flavour in "${flavours[@]}"; do
        build_native "$flavour"
        run_native "$flavour"
    done
}

# Each public header stands alone, for every compiler that a host may use here.
check_public_header() {
    local compiler
    for compiler in g++ clang++ x86_64-w64-mingw32-g++-posix; do
        "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ \
            include/plenxsdk/plenx_manager.h
        "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ \
            -include include/plenxsdk/plenx.hpp /dev/null
    done
    gcc -std=c99 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c include/plenxsdk/plenx.h
    g++ -std=c++98 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ include/plenxsdk/plenx.h
}

# run_native FLAVOUR [CTEST-ARGUMENT...]: runs what ctest selects, or otherwise everything once. Some
# programs run whole: to ctest they are one test, and their own files have the counts.
run_native() {
    local name=native-$1 status=0
    local log=$log_dir/$name-tests.txt programs=$build_dir/native-$1/programs
    local -a counts
    shift
    [ $# -gt 0 ] || set -- -LE '\.single$'
    forget_counts "$build_dir/$name"
    rm -rf "$programs"
    # ThreadSanitizer would wait a second at each end of a process that still has threads, and the
    # tests of such ends are many.
    (cd "$build_dir/$name" && TSAN_OPTIONS=atexit_sleep_ms=0 ctest -j"$(nproc)" --output-on-failure \
        --output-junit "$results_dir/$name.xml" "$@") >"$log" 2>&1 </dev/null || status=$?
    mapfile -t counts < <(find "$programs" -name '*.xml' 2>/dev/null)
    report "$name" "native tests, ${name#native-}" $status "$log" "${counts[@]}"
}

# report NAME TEXT STATUS LOG [COUNTS...]: prints the count of a run, and its failures. A run that
# failed without a failed test (it crashed, or ended badly) counts as one failure more.
report() {
    local xml=$results_dir/$1.xml passed=0 failed=0 skipped=0
    if [ -e "$xml" ]; then
        read -r passed failed skipped < <(count_results "$xml" "${@:5}")
    fi
    if [ "$3" -ne 0 ]; then
        echo "  $2 failed (exit code $3):"
        grep -aE "$failure_lines" "$4" | grep -avE ' Passed +[0-9]' | head -n 40 || true
        echo "  (${4#"$root"/} has the whole output)"
        [ "$failed" -ne 0 ] || failed=1
    fi
    echo "  $2: $passed passed, $failed failed, $skipped skipped"
    count "$passed" "$failed" "$skipped"
}

all_windows_tests() {
    (cd "$windows_build/bin" && ls ./*_test.exe | sed 's|^\./||; s|\.exe$||')
}

test_windows() {
    local name
    for name in "$@"; do
        [[ $name = *_test ]] || fail "there is no test program '$name'"
    done
    compile_windows "${@:-all}"
    run_windows "$@"
}

# run_windows [PROGRAM...]: runs the named programs, or all of them.
run_windows() {
    local -a names=("$@")
    make_prefix_template
    if [ ${#names[@]} -eq 0 ]; then
        # Each program runs once, the long ones first.
        mapfile -t names < <({ printf '%s\n' "${long_windows_tests[@]}"; all_windows_tests; } |
            awk '!seen[$0]++')
    fi
    local name
    local -A running=()  # process to name
    for name in "${names[@]}"; do
        [ -e "$windows_build/bin/$name.exe" ] || fail "there is no test program '$name'"
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
        wine "$1.exe" --gtest_filter="${windows_filter:-*}" \
        --gtest_output=xml:"Z:${xml//\//\\}") >"$log" 2>&1 </dev/null &
    run=$!
    if $show_each_test; then
        tail -n +1 -f --pid=$run "$log" |
            grep --line-buffered -aE '^\[ *(RUN|OK|FAILED) ' | sed 's/^/    /' || true
    fi
    wait $run || status=$?
    drop_prefix "$prefix"
    return $status
}

# test_terminal SCRIPT: runs plenxkit on a terminal that a Python script plays.
test_terminal() {
    local prefix status=0
    prefix=$(new_prefix terminal)
    keep_wine_up "$prefix"
    PYTHONPATH=tests/windows/kit PYTHONDONTWRITEBYTECODE=1 timeout -k 10 $windows_test_seconds \
        python3 "tests/windows/kit/$1" "$windows_build/bin" "$prefix" || status=$?
    drop_prefix "$prefix"
    return $status
}

# count_results FILE [COUNTS...]: prints "passed failed skipped". The head of a JUnit file has
# these counts. GoogleTest does not count skipped tests, but marks them. The first file counts each
# program that has a file of its own as one test.
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
        /<testsuites?[ \n]/ && !head[FILENAME]++ {
            bad = attribute("failures") + attribute("errors")
            good = attribute("tests") - bad
            unrun = attribute("skipped") + attribute("disabled")
            if (NR != FNR) { if (bad > 0) { bad -= 1 } else { good -= 1 } }
            passed += good - unrun; failed += bad; skipped += unrun
        }
        /<testcase[ \n]/ && /result="skipped"/ { passed -= 1; skipped += 1 }
        END { print passed + 0, failed + 0, skipped + 0 }' "$@"
}

check_sources() {
    step "check the format of the sources" check_format
    step "compile the public header alone" check_public_header
    step "hold the table of tests against the tests" python3 docs/check_conformance.py
}

# There are two lanes: one keeps the cores busy, and the other mostly waits. Tests that wait for
# real services have deadlines, so the busy lane steps back where both want a core.
test_all() {
    need_packages "${native_packages[@]}" "${windows_packages[@]}" "${coverage_packages[@]}" \
        "${mutate_packages[@]}" "${docs_packages[@]}" "${browser_packages[@]}" \
        "${package_packages[@]}" "${lint_packages[@]}" "${python_packages[@]}" \
        "${dotnet_packages[@]}"
    check_sources
    prepare_node
    in_lane busy_lane
    in_lane waiting_lane
    finish_lanes
}

busy_lane() {
    renice -n 5 -p "$BASHPID" >/dev/null
    test_native plain
    check_native_coverage
    test_python
    test_dotnet
    test_node_natively
    in_lane test_browser
    test_native address thread
    check_tidy "$(base_commit)"
    step "see the tests notice mutants" check_some_mutants $brief_mutants
}

waiting_lane() {
    compile_windows all
    make_prefix_template
    in_lane package_lane
    PLENX_TEST_ENDINGS=$brief_endings PLENX_TEST_BRIEF_JUDGE=1 run_windows
    test_node_under_wine
    step "type at the host's prompt" test_terminal host/dialogue.py
    step "interrupt the judge" test_terminal judge/interrupted.py
    step "hold the host's JSON against its schema" /usr/bin/python3 \
        docs/check_kit_host_json.py "$windows_build/bin/plenxkit-host.jsonl"
}

package_lane() {
    in_lane test_verify
    build_docs
    test_package
}

# These tests are for work on the code: all unit tests of one flavour, and the library's life with
# real services.
test_quick() {
    need_packages "${native_packages[@]}" "${windows_packages[@]}"
    in_lane test_native plain
    in_lane quick_windows
    finish_lanes
}

quick_windows() {
    compile_windows $quick_windows_test
    windows_filter=$quick_windows_filter run_windows $quick_windows_test
}

# test_one NAME: runs a program, or a test as GoogleTest names it, wherever it is.
test_one() {
    local name=${1:-} word before
    [ -n "$name" ] || fail "'test one' needs the name of a test or of a test program"
    # This removes the suite, and the text around the name of a test with parameters.
    word=${name##*.}
    word=${word%%/*}
    one_native "$name" "$word"
    one_windows "$name" "$word"
    [ -s "$results_dir/counts" ] || fail "no test and no test program is named '$name'"
}

# folders_with WORD FOLDER...: prints the folders whose tests, or whose list of programs, contain
# the word.
folders_with() {
    local word=$1
    shift
    grep -rlw --include='*.cpp' --include='*.h' --include=CMakeLists.txt -e "$word" "$@" |
        xargs -r -n 1 dirname | sort -u
}

one_native() {
    local folder found=false
    local -a which=(-R "${1//./\\.}" -LE '^program$')
    [[ $1 != *_test ]] || which=(-L "^$1(\\.single)?\$")
    for folder in $(folders_with "$2" tests/unit tests/both_worlds); do
        folder=${folder/#tests\/both_worlds/tests\/unit\/both_worlds}
        need_packages "${native_packages[@]}"
        configure_native plain
        step "build $folder" ninja -C "$build_dir/native-plain" "$folder/all"
        found=true
    done
    # "grep -q" would end before ctest has printed its last line, which pipefail takes for a failure.
    if $found && (cd "$build_dir/native-plain" && ctest -N "${which[@]}" 2>/dev/null) | grep 'Test *#[0-9]' >/dev/null; then
        run_native plain "${which[@]}"
    fi
}

one_windows() {
    local folder program windows_filter="*$1*"
    [[ $1 != *_test ]] || windows_filter='*'
    for folder in $(folders_with "$2" tests/windows tests/both_worlds); do
        for program in $(sed -nE 's/^ *plenx_(windows|judge)_test\((\w+).*/\2/p' "$folder/CMakeLists.txt"); do
            if [[ $1 != *_test || $1 = "$program" ]]; then
                compile_windows "$program"
                run_windows "$program"
            fi
        done
    done
}

command_test() {
    local which=${1:-all}
    [ $# -gt 0 ] && shift
    forget_results
    trap end_lanes INT TERM
    case $which in
    all) test_all ;;
    quick) test_quick ;;
    one) test_one "$@" ;;
    package)
        need_packages "${docs_packages[@]}"
        build_docs
        test_package
        ;;
    verify)
        compile_windows verify_programs
        test_verify
        ;;
    native) test_native "$@" ;;
    windows) test_windows "$@" ;;
    browser) test_browser ;;
    python) test_python ;;
    dotnet) test_dotnet ;;
    node) test_node ;;
    *)
        echo "plenx: 'test' does not know '$which'; it takes all, quick, one NAME, native," \
            "windows, browser, python, dotnet, node, package and verify" >&2
        exit 2
        ;;
    esac
    close_results
}
