// Included into each source of a host that Visual C++ builds. Strings and memory cross the border
// of plenxsdk.dll, so both must have the same C++ run time: the release one, as DLLs.

#if defined(_DEBUG) || !defined(_DLL)
#error \
    "plenxsdk: plenxsdk.dll has the run time of /MD; build the host with it, in Debug too: set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)"
#elif defined(_ITERATOR_DEBUG_LEVEL) && _ITERATOR_DEBUG_LEVEL != 0
#error "plenxsdk: _ITERATOR_DEBUG_LEVEL gives std::string another layout than in plenxsdk.dll"
#endif
