# Checks the format of the sources, and runs clang-tidy.

lint_packages=(clang-format-19 clang-tidy-19 python3)
visual_cpp_packages=(clang-19 clang-tools-19 libc++-19-dev llvm-19 libwine-dev)

# The fake Windows headers keep the layout of the real ones.
our_sources() {
    git ls-files "$@" | grep -E '\.(cpp|h|c)$' | grep -v '^tests/fakes/include/'
}

check_format() {
    our_sources | xargs clang-format-19 --dry-run -Werror
}

# The folders whose sources clang-tidy checks. HeaderFilterRegex in .clang-tidy names those of headers.
tidy_folders=(src support devservice kit c_interface companion examples bench tests)

# check_tidy [COMMIT]: checks what has changed since the commit, or everything. A source that was
# clean before is checked again only when it or something that it reads has changed. tidy.py reads what
# the builds have compiled, so both worlds are built first. The benchmarks are built only to check
# everything, because they need packages that nothing else needs.
check_tidy() {
    local -a builds=("$build_dir/native-plain" "$windows_build")
    if [ "${1:-all}" = all ]; then
        compile_native_benches
        compile_windows all bench_windows
        builds+=("$bench_build")
    else
        compile_windows all
    fi
    step "run clang-tidy" python3 scripts/tidy.py clang-tidy-19 "$build_dir/tidy" "${1:-all}" \
        "${builds[@]}" -- "${tidy_folders[@]}"
}

# Prints the commit to compare with: the one where this branch left main, or on main itself the one
# before. A clone without history has neither. There nothing counts as changed, because a check of
# everything takes longer than the tests.
base_commit() {
    local base
    base=$(git merge-base HEAD origin/main 2>/dev/null || git merge-base HEAD main 2>/dev/null) ||
        base=$(git rev-parse HEAD)
    if [ "$base" = "$(git rev-parse HEAD)" ]; then
        base=$(git rev-parse -q --verify HEAD^ || echo HEAD)
    fi
    echo "$base"
}

visual_cpp_build=$build_dir/visual-cpp

# Prepares the headers of the check that Wine has in another form, or not at all: members of the RPC
# runtime's tables have names and types of their own there, and a flag of access lists is missing.
make_visual_cpp_headers() {
    local wine=/usr/include/wine/wine/windows headers=$visual_cpp_build/headers
    mkdir -p "$headers"
    sed -e 's/defined(_MSC_VER) && !defined(__clang__)/defined(_MSC_VER)/' \
        -e '/ULONGLONG SEHandlerCount;/{n;s/^}/  ULONGLONG Guard[4]; DWORD GuardFlags;\n}/}' \
        -e '/define DACL_SECURITY_INFORMATION/a #define PROTECTED_DACL_SECURITY_INFORMATION 0x80000000L' \
        "$wine/winnt.h" >"$headers/winnt.h"
    sed -E -e 's/ULONG_PTR( +Reserved3;)/const void* CsRoutineTables;/' \
        -e 's/ULONG_PTR( +Reserved4;)/void* ProxyServerInfo;/' \
        -e 's/ULONG_PTR( +Reserved5;)/void* pExprInfo;/' \
        -e 's/ULONG_PTR( +pReserved1;)/void* pMethodProperties;/' "$wine/rpcndr.h" >"$headers/rpcndr.h"
    cp /usr/x86_64-w64-mingw32/include/ndr64types.h "$headers/"
}

configure_visual_cpp() {
    [ -e "$visual_cpp_build/headers/winnt.h" ] || make_visual_cpp_headers
    # CMake reads the flags of a tool chain only once.
    [ "$visual_cpp_build/build.ninja" -nt cmake/visual-cpp/check.cmake ] ||
        cmake --fresh -G Ninja -S "$root" -B "$visual_cpp_build" --toolchain "$root/cmake/visual-cpp/check.cmake" \
            -DPLENX_CHECK_HEADERS="$visual_cpp_build/headers" \
            -DCMAKE_BUILD_TYPE=RelWithDebInfo
}

# Compiles what Visual C++ would, tests and benchmarks included. Only what has changed is compiled again.
check_for_visual_cpp() {
    configure_visual_cpp
    ninja -C "$visual_cpp_build" -k 0 all bench_windows
}

workflow_checker=$build_dir/workflow-checker

# Checks the workflows for GitHub against the published schema of such files.
check_workflows() {
    local workflow
    for workflow in .github/workflows/*.yml examples/*/*.yml; do
        "$workflow_checker/node_modules/.bin/action-validator" "$workflow"
    done
}

fetch_workflow_checker() {
    [ ! -e "$workflow_checker/node_modules/.bin/action-validator" ] || return 0
    command -v npm >/dev/null || need_packages npm
    step "fetch the checker of workflows" npm install --silent --no-audit --no-fund \
        --prefix "$workflow_checker" @action-validator/core@0.6.0 @action-validator/cli@0.6.0
}

command_lint() {
    need_packages "${bench_packages[@]}" "${lint_packages[@]}" "${visual_cpp_packages[@]}"
    warnings_are_errors=true
    step "check the format" check_format
    fetch_workflow_checker
    step "hold the workflows against their schema" check_workflows
    build_native plain
    check_tidy
    step "compile as Visual C++ would" check_for_visual_cpp
    echo "The sources pass."
}
