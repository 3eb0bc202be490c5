# Builds both worlds: the native one and the one for Windows.

# ccache does not compile a source again that was compiled in any folder before.
export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1 CCACHE_MAXSIZE=10G
# Without these two, ccache refuses sources with a precompiled header.
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime

windows_build=$build_dir/windows
windows_options=()
# A call stack needs only line numbers; more debug information makes the compiler slower by a fifth.
windows_flags="-O2 -g1 -DNDEBUG"
dist_dir=$build_dir/dist
run_time_dlls=(libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)

# Warnings are errors for continuous integration and 'lint' only, because elsewhere an unknown compiler
# may have other warnings. A folder that was configured this way stays so.
warnings_are_errors=${CI:-false}

# configure FOLDER CMAKE-ARGUMENT...: runs once; later ninja configures again when necessary.
configure() {
    local folder=$1
    shift
    if [ "$warnings_are_errors" = true ] &&
        ! grep -qs '^PLENX_WERROR:BOOL=ON' "$folder/CMakeCache.txt"; then
        set -- "$@" -DPLENX_WERROR=ON
    elif [ -e "$folder/build.ninja" ]; then
        return
    fi
    step "configure $(basename "$folder")" cmake -G Ninja -S "$root" -B "$folder" "$@"
}

# compile_windows NINJA-TARGET...
compile_windows() {
    need_packages "${windows_packages[@]}"
    configure "$windows_build" --toolchain "$root/cmake/mingw-w64-x86-64.cmake" \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="$windows_flags" \
        "${windows_options[@]}"
    # Two lanes of the tests may want this build at the same time.
    step "build for Windows" flock "$windows_build" ninja -C "$windows_build" "$@"
    step "add the run time" copy_run_time "$windows_build/bin"
}

# Builds the product and everything that is shipped with it.
build_windows() {
    compile_windows product
    step "fill build/dist" install_dist
}

install_dist() {
    rm -rf "$dist_dir"
    cmake --install "$windows_build" --prefix "$dist_dir" --strip
    copy_run_time "$dist_dir/bin"
}

# The run time of the compiler has 20 MB of debug information, and Wine starts programs faster with
# pages as in cmake/plenx.cmake.
copy_run_time() {
    local dll from
    for dll in "${run_time_dlls[@]}"; do
        from=$(run_time_dll "$dll")
        if [ "$from" -nt "$1/$dll" ]; then
            x86_64-w64-mingw32-objcopy --strip-debug --file-alignment 4096 "$from" "$1/$dll"
        fi
    done
}

# The C++ run time is in one of the cross compiler's own folders.
run_time_dll() {
    local path
    path=$(x86_64-w64-mingw32-g++-posix -print-file-name="$1")
    [ -e "$path" ] || path=/usr/x86_64-w64-mingw32/lib/$1
    echo "$path"
}

# configure_native FLAVOUR: plain, address (with undefined) or thread
configure_native() {
    local sanitize= coverage=OFF
    local c=gcc cpp=g++
    case $1 in
    plain) coverage=ON ;;
    # g++ takes twice as long for these, and this way the tests see both compilers.
    address) sanitize=address,undefined c=clang cpp=clang++ ;;
    thread) sanitize=thread ;;
    *) fail "the native tests have no flavour '$1'; they have plain, address and thread" ;;
    esac
    # Without optimisation, because the tests take seconds and the compiler takes minutes.
    configure "$build_dir/native-$1" -DCMAKE_C_COMPILER=$c -DCMAKE_CXX_COMPILER=$cpp \
        -DPLENX_SANITIZE="$sanitize" -DPLENX_COVERAGE=$coverage \
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O0 -g1" \
        -DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld
}

build_native() {
    need_packages "${native_packages[@]}"
    configure_native "$1"
    step "build the native tests, $1" ninja -C "$build_dir/native-$1"
}

command_build() {
    build_windows
    echo "build/dist now holds what a host needs: bin, lib, include."
}
