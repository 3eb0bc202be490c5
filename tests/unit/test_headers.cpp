// Owns the precompiled headers that the unit tests share.
