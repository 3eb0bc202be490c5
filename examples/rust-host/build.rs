// Tells the linker where the unpacked package is. GNU's linker takes libplenxsdk_c.dll.a there, and
// Microsoft's takes plenxsdk_c.lib.
fn main() {
    println!("cargo:rerun-if-env-changed=PLENXSDK");
    let package = std::env::var("PLENXSDK").expect("PLENXSDK must name the unpacked package");
    println!("cargo:rustc-link-search=native={package}/lib");
}
