// Owns the precompiled headers that the tests share.
