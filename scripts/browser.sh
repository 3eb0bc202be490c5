# Tests the pages that are made for a browser, in a browser.

test_browser() {
    need_packages "${browser_packages[@]}"
    build_native plain
    local log=$log_dir/browser-tests.txt status=0
    # Debian's Python, because only that has the installed packages.
    PYTHONDONTWRITEBYTECODE=1 timeout -k 10 900 /usr/bin/python3 tests/browser/trace_test.py \
        --program "$build_dir/native-plain/kit/plenxkit" \
        --xml "$results_dir/browser.xml" >"$log" 2>&1 </dev/null || status=$?
    report browser "pages in Chromium" $status "$log"
}
