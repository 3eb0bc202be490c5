// The tests share the precompiled headers of this source.
