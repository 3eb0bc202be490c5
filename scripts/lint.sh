# The sources' format, and what clang-tidy finds.

lint_packages=(clang-format clang-tidy)

# The fake Windows headers keep the layout of the real ones.
our_sources() {
    git ls-files "$@" | grep -E '\.(cpp|h|c)$' | grep -v '^tests/fakes/include/'
}

check_format() {
    our_sources | xargs clang-format --dry-run -Werror
}

# The library's own sources, as the native build sees them.
check_tidy() {
    our_sources src | grep '\.cpp$' | grep -v 'src/common/process_life.cpp\|src/rpc/interface/' |
        xargs -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build_dir/native-plain"
}

command_lint() {
    need_packages "${native_packages[@]}" "${lint_packages[@]}"
    configure_native plain
    step "check the format" check_format
    step "run clang-tidy" check_tidy
    echo "Nothing to complain of."
}
