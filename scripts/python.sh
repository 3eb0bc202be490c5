# Tests the binding for Python, and packs it as a wheel.

test_python() {
    local log=$log_dir/python-tests.txt status=0
    need_packages "${native_packages[@]}" "${python_packages[@]}"
    step "check the types of the binding for Python" check_python_types
    build_c_interface_for_linux
    PLENX_C_LINUX=$c_interface_for_linux PYTHONDONTWRITEBYTECODE=1 timeout -k 10 300 pytest-3 -q \
        -p no:cacheprovider "$root/tests/bindings/python" -o python_files='*_test.py' \
        --junitxml="$results_dir/python.xml" >"$log" 2>&1 </dev/null || status=$?
    report python "the binding for Python" $status "$log"
}

check_python_types() {
    local platform
    for platform in win32 linux; do
        /usr/bin/mypy --strict --cache-dir="$build_dir/mypy" --python-version 3.9 --platform $platform \
            bindings/python/plenxsdk
    done
    MYPYPATH=package:bindings/python /usr/bin/mypy --strict --cache-dir="$build_dir/mypy" \
        package/wheel.py package/nupkg.py package/recipes.py
}

# The bindings' tests load this library.
build_c_interface_for_linux() {
    configure_native plain
    step "build the plain C interface for Linux" \
        ninja -C "$build_dir/native-plain" plenxsdk_c_linux
    c_interface_for_linux=$build_dir/native-plain/tests/bindings/libplenxsdk_c.so
}

# Packs the filled package_folder as a wheel in bindings_dir.
make_wheel() {
    step "pack the wheel" env PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 package/wheel.py \
        "$package_folder" "$(project_version)" "$(time_of_sources)" "$bindings_dir"
}
