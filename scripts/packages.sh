# Installs Debian packages that are missing.

base_packages=(cmake ninja-build ccache)
windows_packages=("${base_packages[@]}"
    g++-mingw-w64-x86-64-posix mingw-w64-tools clang lld llvm
    wine wine64
    googletest libspdlog-dev libfmt-dev libcli11-dev libtomlplusplus-dev nlohmann-json3-dev
    librapidxml-dev libutfcpp-dev)
schema_packages=(python3 python3-jsonschema)
native_packages=("${base_packages[@]}" "${schema_packages[@]}" g++ clang libclang-rt-dev lld
    googletest libspdlog-dev libfmt-dev libcli11-dev libtomlplusplus-dev nlohmann-json3-dev
    librapidxml-dev libutfcpp-dev)
browser_packages=(chromium chromium-driver python3-selenium)
dotnet_packages=(python3 g++ mono-mcs mono-runtime)
python_packages=(python3 python3-pytest mypy g++)
package_packages=(zip unzip osslsigncode openssl pkg-config python3-pip golang-go
    "${python_packages[@]}" "${dotnet_packages[@]}")
# Later releases have no standard library of Rust for Windows.
if grep -qs '^VERSION_ID="12"' /etc/os-release; then
    package_packages+=(rustc cargo libstd-rust-dev-windows)
fi
bench_packages=("${native_packages[@]}" "${windows_packages[@]}" python3 pkg-config libbenchmark-dev
    libflatbuffers-dev flatbuffers-compiler libmsgpack-cxx-dev liblog4cplus-dev
    'libsigc++-2.0-dev' libboost-dev libconcurrentqueue-dev)

# become_root WHAT-FOR: fills as_root with what goes in front of a command that only root may run.
become_root() {
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "only root can $1, and sudo is not here"
        as_root=(sudo)
    fi
}

need_packages() {
    local -a missing
    mapfile -t missing < <(printf '%s\n' "$@" | sort -u | comm -23 - <(installed_packages "$@"))
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    command -v apt-get >/dev/null || fail "this machine has no apt-get to install ${missing[*]}"
    local -a as_root=()
    become_root "install ${missing[*]}"
    local -a apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get)
    step "read the package lists" "${apt[@]}" update
    # The step names only their number, because many names are too long for the name of a log.
    step "install ${#missing[@]} packages" \
        "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
}

# installed_packages PACKAGE...: prints those that are installed, sorted.
installed_packages() {
    dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^installed //p' | sort -u
}
