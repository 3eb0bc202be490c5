# Builds, tests and packs the binding for .NET.

dotnet_build=$build_dir/dotnet
# The assembly must not have the name of plenxsdk.dll, which lies beside it.
dotnet_assembly=plenxsdk.net

# build_dotnet FOLDER: puts the assembly there. The same sources give the same bytes.
build_dotnet() {
    mkdir -p "$1"
    write_assembly_info >"$1/AssemblyInfo.cs"
    (cd bindings/dotnet && mcs -target:library -unsafe -langversion:7.2 -optimize -deterministic \
        -warnaserror -doc:"$1/$dotnet_assembly.xml" -out:"$1/$dotnet_assembly.dll" \
        src/*.cs "$1/AssemblyInfo.cs")
}

write_assembly_info() {
    local version
    version=$(project_version)
    echo "using System.Reflection;"
    echo "[assembly: AssemblyTitle(\"plenxsdk for .NET\")]"
    echo "[assembly: AssemblyVersion(\"$version.0\")]"
    echo "[assembly: AssemblyFileVersion(\"$version.0\")]"
}

build_dotnet_tests() {
    local folder=$dotnet_build/tests
    mkdir -p "$folder"
    cp "$dotnet_build/$dotnet_assembly.dll" "$folder/"
    python3 tests/bindings/plenx_header.py >"$folder/declarations.txt"
    sed -n '/^```csharp/,/^```$/ { /^```/d; p }' bindings/dotnet/README.md >"$folder/Host.cs"
    mcs -langversion:7.2 -warnaserror -main:Runner -r:"$folder/$dotnet_assembly.dll" \
        -out:"$folder/tests.exe" tests/bindings/dotnet/*.cs "$folder/Host.cs"
}

test_dotnet() {
    local log=$log_dir/dotnet-tests.txt status=0
    need_packages "${native_packages[@]}" "${dotnet_packages[@]}"
    build_c_interface_for_linux
    step "build the binding for .NET" build_dotnet "$dotnet_build"
    step "build the binding for .NET again" build_dotnet "$dotnet_build/again"
    step "compare the two assemblies" \
        cmp "$dotnet_build/$dotnet_assembly.dll" "$dotnet_build/again/$dotnet_assembly.dll"
    step "build the tests of the binding for .NET" build_dotnet_tests
    # The icons of the services go into the current folder.
    mkdir -p "$dotnet_build/tests/machine"
    (cd "$dotnet_build/tests/machine" && LD_LIBRARY_PATH=$(dirname "$c_interface_for_linux") \
        PLENX_DECLARATIONS=$dotnet_build/tests/declarations.txt timeout -k 10 300 \
        mono --debug "$dotnet_build/tests/tests.exe" "$results_dir/dotnet.xml" \
        >"$log" 2>&1 </dev/null) || status=$?
    report dotnet "the binding for .NET" $status "$log"
}

# Fetches .NET Core for Windows, which npm has and which Wine runs: 27 MB, without the SDK.
windows_dotnet=dotnet-2.0.0-win
windows_dotnet_version=1.0.5
windows_dotnet_sha256=8ab4690ff829bcbbaf962febf6ef50b1bfb719b40a06bb9b2cb3ac3882d05d36
fetch_windows_dotnet() {
    windows_dotnet_dir=$build_dir/windows-dotnet/package
    [ ! -e "$windows_dotnet_dir/.ready" ] || return 0
    command -v npm >/dev/null || need_packages npm
    step "fetch .NET Core for Windows" unpack_windows_dotnet
}

unpack_windows_dotnet() {
    local folder=$build_dir/windows-dotnet archive
    archive=$windows_dotnet-$windows_dotnet_version.tgz
    rm -rf "$folder"
    mkdir -p "$folder"
    (cd "$folder" && npm pack --silent "$windows_dotnet@$windows_dotnet_version" &&
        echo "$windows_dotnet_sha256  $archive" | sha256sum --check --strict &&
        tar -xzf "$archive" && rm "$archive" && touch "$windows_dotnet_dir/.ready")
}

# Packs the filled package_folder and the assembly for NuGet in bindings_dir.
make_nupkg() {
    local built=$package_dir/dotnet
    step "build the binding for NuGet" build_dotnet "$built"
    [ -z "${sign:-}" ] || step "sign the binding for NuGet" sign_file "$built/$dotnet_assembly.dll"
    step "pack it for NuGet" env PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 package/nupkg.py \
        "$package_folder" "$built" "$(project_version)" "$(time_of_sources)" "$bindings_dir"
}
