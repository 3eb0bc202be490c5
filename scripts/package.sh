# Packs the SDK as one ZIP, the same DLLs for each language, and plenxverify. The same sources give the
# same bytes.

package_dir=$build_dir/package
run_time_packages=(gcc-mingw-w64-base mingw-w64-common)
tool_packages=(libcli11-dev nlohmann-json3-dev libtomlplusplus-dev librapidxml-dev libspdlog-dev libfmt-dev)

# command_package [--sign FILE.pfx | --sign test] [--password FILE] [--timestamp URL] [--twice]
command_package() {
    local sign= password= timestamp= twice=false
    while [ $# -gt 0 ]; do
        case $1 in
        --twice) twice=true ;;
        --sign | --password | --timestamp)
            [ $# -gt 1 ] || fail "'package' needs a value after $1"
            printf -v "${1#--}" '%s' "$2"
            shift
            ;;
        *)
            fail "'package' does not know '$1'; it takes --sign FILE.pfx or --sign test," \
                "--password FILE, --timestamp URL and --twice"
            ;;
        esac
        shift
    done
    [ -z "$sign" ] || [ "$sign" = test ] || [ -e "$sign" ] || fail "there is no file '$sign'"
    need_packages "${package_packages[@]}"
    need_node
    compile_windows verify_programs
    command_docs
    make_package
    make_verify_package
    if $twice; then
        [ -n "$sign" ] || pack_again  # a signature contains its time
        build_again verify_programs
        step "compare the two builds" compare_builds
        echo "A second build, in another folder, gave the same programs, byte for byte."
    fi
    echo "The package is ${package_zip#"$root"/} ($(du -h "$package_zip" | cut -f1))."
    echo "The packages of the languages are in ${bindings_dir#"$root"/}."
    echo "What a stranger takes to a Windows machine is ${verify_zip#"$root"/}."
}

make_package() {
    make_sdk
    make_bindings
}

# Needs the programs and the docs. Fills package_dir with the folder, its ZIP and the ZIP's
# checksum; names them in package_folder and package_zip.
make_sdk() {
    local name
    name=plenxsdk-$(project_version)-win64-mingw
    [ -z "${sign:-}" ] || name+=-signed
    package_folder=$package_dir/$name
    package_zip=$package_dir/$name.zip
    rm -rf "$package_folder" "$package_zip"
    step "fill the package" fill_package
    if [ "${sign:-}" = test ]; then
        step "make a certificate for tests" make_test_certificate
        sign=$package_dir/test-certificate.pfx password=$package_dir/test-certificate.password
    fi
    [ -z "${sign:-}" ] || step "sign the package" sign_package
    step "write the checksums" write_checksums
    step "pack it" write_zip "$package_folder"
}

# Needs the folder of the package. Fills bindings_dir with the packages of the languages.
make_bindings() {
    bindings_dir=$package_dir/bindings${sign:+-signed}
    rm -rf "$bindings_dir"
    mkdir -p "$bindings_dir"
    make_wheel
    make_nupkg
    make_recipes
    make_npm_package
}

fill_package() {
    # The tools that split a program write this time into it.
    local -x SOURCE_DATE_EPOCH
    SOURCE_DATE_EPOCH=$(time_of_sources)
    cmake --install "$windows_build" --prefix "$package_folder"
    copy_run_time "$package_folder/bin"
    x86_64-w64-mingw32-strip "${run_time_dlls[@]/#/$package_folder/bin/}"
    split_symbols
    mkdir -p "$package_folder/share/doc/plenxsdk"
    cp -r "$docs_dir/html" "$package_folder/share/doc/plenxsdk/html"
    point_to_html
    copy_licenses "$package_folder" "${run_time_packages[@]}" "${tool_packages[@]}"
    chmod -R u=rwX,go=rX "$package_folder"
}

our_binaries() {
    (cd "$package_folder/bin" && find . -type f \( -name '*.dll' -o -name '*.exe' -o -name '*.sys' \) |
        sed 's|^\./||' | grep -vxFf <(printf '%s\n' "${run_time_dlls[@]}") | LC_ALL=C sort)
}

# Each of our files keeps the name and the checksum of its symbols.
split_symbols() {
    local file symbols
    local tool=x86_64-w64-mingw32
    for file in $(our_binaries); do
        symbols=$package_folder/debug/$file.debug
        mkdir -p "$(dirname "$symbols")"
        $tool-objcopy --only-keep-debug "$package_folder/bin/$file" "$symbols"
        $tool-strip "$package_folder/bin/$file"
        $tool-objcopy --add-gnu-debuglink="$symbols" "$package_folder/bin/$file"
    done
    chmod -x "$package_folder"/debug/*.debug "$package_folder"/debug/*/*.debug
}

# In the package the pages are HTML.
point_to_html() {
    find "$package_folder" -name '*.md' -exec sed -i -E \
        's%\]\((\.\./\.\./)?docs/([a-z-]+)\.md%](\1share/doc/plenxsdk/html/\2.html%g' {} +
}

# copy_licenses FOLDER PACKAGE...
copy_licenses() {
    local package licenses=$1/licenses
    shift
    mkdir -p "$licenses"
    for package in "$@"; do
        cp "/usr/share/doc/$package/copyright" "$licenses/$package.txt"
    done
}

# A time server is asked only when one is named; without it a signature ends with its certificate.
sign_package() {
    local file
    for file in $(our_binaries); do
        sign_file "$package_folder/bin/$file"
    done
}

sign_file() {
    local signed=$package_dir/signed
    local -a how=(-pkcs12 "$sign" -h sha256 -n plenxsdk)
    [ -z "$password" ] || how+=(-readpass "$password")
    [ -z "$timestamp" ] || how+=(-ts "$timestamp")
    osslsigncode sign "${how[@]}" -in "$1" -out "$signed"
    mv "$signed" "$1"
}

# This is for tests only: nobody trusts this certificate, and each run makes a new one.
make_test_certificate() {
    local name=$package_dir/test-certificate
    echo test >"$name.password"
    openssl req -x509 -newkey rsa:2048 -nodes -days 30 -subj "/CN=plenxsdk test, not to be trusted" \
        -addext extendedKeyUsage=codeSigning -addext keyUsage=digitalSignature \
        -keyout "$name.key" -out "$name.pem"
    openssl pkcs12 -export -inkey "$name.key" -in "$name.pem" -passout "file:$name.password" \
        -out "$name.pfx"
}

write_checksums() {
    (cd "$package_folder" && find . -type f ! -name SHA256SUMS -printf '%P\n' | LC_ALL=C sort |
        xargs -d '\n' sha256sum >"$package_dir/sums")
    mv "$package_dir/sums" "$package_folder/SHA256SUMS"
}

# Prints the time of the last commit, or the first time that a ZIP can have.
time_of_sources() {
    git -C "$root" log -1 --format=%ct 2>/dev/null || echo 315619200
}

# A ZIP stores the order and the times of its files, so they are sorted and get the time of the commit.
# write_zip FOLDER: packs it as FOLDER.zip, with a checksum beside it.
write_zip() {
    local name
    name=$(basename "$1")
    find "$1" -exec touch -d "@$(time_of_sources)" {} +
    (cd "$package_dir" && find "$name" -type f | LC_ALL=C sort | TZ=UTC zip -X -q -@ "$1.zip" &&
        sha256sum "$name.zip" >"$1.zip.sha256")
}

# Needs the programs of the target verify_programs. Fills package_dir with the folder and its ZIP; names
# them in verify_folder and verify_zip.
make_verify_package() {
    verify_folder=$package_dir/plenxverify-$(project_version)-win64
    verify_zip=$verify_folder.zip
    rm -rf "$verify_folder" "$verify_zip"
    step "fill plenxverify" fill_verify_package
    step "pack plenxverify" write_zip "$verify_folder"
}

# The names of functions stay, because a test of the guards looks for them.
fill_verify_package() {
    # strip writes this time into a program.
    local -x SOURCE_DATE_EPOCH
    SOURCE_DATE_EPOCH=$(time_of_sources)
    cmake --install "$windows_build" --component verify --prefix "$verify_folder"
    copy_run_time "$verify_folder/programs"
    find "$verify_folder/programs" \( -name '*.dll' -o -name '*.exe' -o -name '*.sys' \) \
        -exec x86_64-w64-mingw32-strip --strip-debug {} +
    copy_licenses "$verify_folder" "${run_time_packages[@]}" "${tool_packages[@]}" googletest
    chmod -R u=rwX,go=rX "$verify_folder"
}

pack_again() {
    local first=$package_dir/first
    rm -rf "$first"
    mkdir "$first"
    mv "$package_zip" "$bindings_dir" "$verify_zip" "$first/"
    make_package
    make_verify_package
    step "compare the two packages" cmp "$first/$(basename "$package_zip")" "$package_zip"
    step "compare plenxverify with itself" cmp "$first/$(basename "$verify_zip")" "$verify_zip"
    step "compare the packages of the languages" \
        diff -r "$first/$(basename "$bindings_dir")" "$bindings_dir"
    rm -r "$first"
}

# build_again TARGET...: builds the same sources once more, from another folder into another folder.
again_dir=$build_dir/again
build_again() {
    rm -rf "$again_dir"
    mkdir -p "$again_dir/other source"
    tar -C "$root" --exclude=./build --exclude=./.git -cf - . | tar -C "$again_dir/other source" -xf -
    step "configure a second build" cmake -G Ninja -S "$again_dir/other source" \
        -B "$again_dir/windows" --toolchain "$root/cmake/mingw-w64-x86-64.cmake" \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="$windows_flags"
    # The cache would only return the first build.
    step "build a second time" env CCACHE_DISABLE=1 ninja -C "$again_dir/windows" "$@"
}

# Everything that the second build has made must equal the first.
compare_builds() {
    local file compared=0
    while read -r file; do
        cmp "$windows_build/$file" "$again_dir/windows/$file"
        compared=$((compared + 1))
    done < <(cd "$again_dir/windows" &&
        find bin lib -name '*.dll' -o -name '*.exe' -o -name '*.sys' -o -name '*.dll.a' \
            -o -name '*.lib')
    [ $compared -gt 0 ]
    echo "$compared files"
}

# Builds and runs a host from the unpacked package alone. 'package --twice' shows that a second
# packing and a second build give the same bytes. The hosts lie in the same place in each run, so that
# ccache knows them again.
test_package() {
    local prefix status=0 log=$log_dir/package-tests.txt sign= password= timestamp=
    local place=${TMPDIR:-/tmp}/plenx-package-tests${root//\//-}
    need_packages "${package_packages[@]}"
    fetch_node_modules
    compile_windows product
    fetch_windows_dotnet
    make_package
    local plain=$package_zip
    sign=test
    make_sdk
    make_prefix_template
    prefix=$(new_prefix package)
    keep_wine_up "$prefix"
    WINEPREFIX=$prefix PLENX_PACKAGE=$plain PLENX_SIGNED_PACKAGE=$package_zip \
        PLENX_BINDINGS=$bindings_dir PLENX_WINDOWS_DOTNET=$windows_dotnet_dir \
        PLENX_NODE_MODULES=$node_dir/node_modules \
        PLENX_TEST_CERTIFICATE=$package_dir/test-certificate.pem \
        PYTHONDONTWRITEBYTECODE=1 timeout 900 pytest-3 -q -p no:cacheprovider --basetemp="$place" \
        "$root/tests/package" -o python_files='*_test.py' --junitxml="$results_dir/package.xml" \
        >"$log" 2>&1 </dev/null || status=$?
    drop_prefix "$prefix"
    report package "tests of the package" $status "$log"
}

# Unpacks plenxverify as a stranger does, and lets it verify this Wine, in short.
test_verify() {
    local prefix status=0 log=$log_dir/verify-tests.txt
    need_packages "${package_packages[@]}"
    make_verify_package
    make_prefix_template
    prefix=$(new_prefix verify)
    keep_wine_up "$prefix"
    WINEPREFIX=$prefix PLENX_VERIFY_PACKAGE=$verify_zip PYTHONDONTWRITEBYTECODE=1 timeout 900 \
        pytest-3 -q -p no:cacheprovider "$root/tests/verify" -o python_files='*_test.py' \
        --junitxml="$results_dir/verify.xml" >"$log" 2>&1 </dev/null || status=$?
    drop_prefix "$prefix"
    report verify "plenxverify under Wine" $status "$log"
}
