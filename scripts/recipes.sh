# Packs the port for vcpkg and the recipe for Conan.

# Packs the finished package_zip for both, in bindings_dir.
make_recipes() {
    step "pack the recipes for vcpkg and Conan" env PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 \
        package/recipes.py "$package_zip" "$(project_version)" "$(time_of_sources)" "$bindings_dir"
}
