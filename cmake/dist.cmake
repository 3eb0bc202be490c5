# What a host needs, side by side: bin (all DLLs and programs), lib (import libraries), include
# (the public header and the companions' two).

set(driver_files dokan1_sys dokan1 dokanfuse1)

install(TARGETS plenxsdk LogHelper distributedfile
  RUNTIME DESTINATION bin
  LIBRARY DESTINATION bin
  ARCHIVE DESTINATION lib)
install(TARGETS plenxservice plenxhost RUNTIME DESTINATION bin)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/plenxsdk DESTINATION include)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/companion/include/ DESTINATION include)
