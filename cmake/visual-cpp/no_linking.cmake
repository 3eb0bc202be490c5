# What would be linked is an empty file, because there are no libraries for Visual C++ here.

foreach(language IN ITEMS C CXX)
  set(CMAKE_${language}_CREATE_STATIC_LIBRARY "<CMAKE_COMMAND> -E touch <TARGET>")
  set(CMAKE_${language}_CREATE_SHARED_LIBRARY "<CMAKE_COMMAND> -E touch <TARGET> <TARGET_IMPLIB>")
  set(CMAKE_${language}_CREATE_SHARED_MODULE "<CMAKE_COMMAND> -E touch <TARGET>")
  set(CMAKE_${language}_LINK_EXECUTABLE "<CMAKE_COMMAND> -E touch <TARGET>")
endforeach()
