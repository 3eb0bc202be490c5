# Makes the reference and the pages as HTML that needs no network.

docs_packages=(doxygen cmark-gfm python3)
docs_dir=$build_dir/docs

make_docs() {
    python3 docs/build.py "$docs_dir" "$(project_version)"
    python3 docs/check_links.py "$docs_dir/html"
}

build_docs() {
    step "hold the pages against the sources" python3 docs/check_pages.py
    step "build the docs" make_docs
}

command_docs() {
    need_packages "${docs_packages[@]}"
    build_docs
    echo "The pages are built. Begin with build/docs/html/index.html."
}
