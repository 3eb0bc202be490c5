# All parts of ./plenx share these functions.

build_dir=$root/build
log_dir=$build_dir/log
mkdir -p "$log_dir"

fail() {
    echo "plenx: $*" >&2
    exit 1
}

# step TEXT COMMAND...: runs the command with its output in build/log. Prints one line, and the end of
# the output if the command fails. A function runs in a subshell, and ends with its first command that
# fails, which it would not do as part of '||' or 'if'.
step() {
    local text=$1
    shift
    local log start status
    log=$log_dir/$(echo "$text" | tr -c 'a-zA-Z0-9\n' '-').log
    start=$SECONDS
    set +e
    (set -e; "$@") >"$log" 2>&1 </dev/null
    status=$?
    set -e
    if [ $status -ne 0 ]; then
        echo "  The step '$text' has failed. Its output ends with:" >&2
        tail -n 40 "$log" >&2
        fail "could not $text (exit code $status); ${log#"$root"/} has the whole output"
    fi
    if [ $((SECONDS - start)) -gt 1 ]; then
        echo "  $text ($((SECONDS - start)) s)"
    fi
}

# The version is in one place only: the project's line in CMakeLists.txt.
project_version() {
    sed -nE 's/^project\(plenxsdk VERSION ([0-9.]+).*/\1/p' "$root/CMakeLists.txt"
}
