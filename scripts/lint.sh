# Checks the format of the sources, and runs clang-tidy.

lint_packages=(clang-format-19 clang-tidy-19 python3)

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
# before. A clone without history has neither: there nothing differs, because a check of everything takes
# longer than the tests.
base_commit() {
    local base
    base=$(git merge-base HEAD origin/main 2>/dev/null || git merge-base HEAD main 2>/dev/null) ||
        base=$(git rev-parse HEAD)
    if [ "$base" = "$(git rev-parse HEAD)" ]; then
        base=$(git rev-parse -q --verify HEAD^ || echo HEAD)
    fi
    echo "$base"
}

msvc_options=(--target=x86_64-w64-mingw32 -fsyntax-only -fms-extensions
    -Wall -Wextra -Wpedantic -Wmicrosoft -Wshorten-64-to-32 -Wimplicit-int-conversion
    -Wsign-compare -Wnon-virtual-dtor -Woverloaded-virtual -Wno-language-extension-token -Werror
    -D_WIN32_WINNT=0x0601 -DNOMINMAX -DWIN32_LEAN_AND_MEAN -DUNICODE -D_UNICODE -DPLENXSDK_BUILD
    -Isrc -Iinclude -Icompanion/include)

# Compiles the library's sources as similarly to MSVC as possible here: with clang, Microsoft's
# extensions, and the warnings that MSVC has at level 4 and gcc does not have in -Wextra.
check_for_msvc() {
    local headers
    headers=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
    our_sources src | grep '\.cpp$' | xargs -n 1 -P "$(nproc)" \
        clang++ -std=c++17 -femulated-tls "${msvc_options[@]}" \
        -isystem "$headers" -isystem "$headers/x86_64-w64-mingw32"
    our_sources src | grep '\.c$' | xargs -n 1 -P "$(nproc)" clang -std=c11 "${msvc_options[@]}"
}

command_lint() {
    need_packages "${bench_packages[@]}" "${lint_packages[@]}"
    warnings_are_errors=true
    step "check the format" check_format
    build_native plain
    check_tidy
    step "compile as near to MSVC as can be" check_for_msvc
    echo "The sources pass."
}
