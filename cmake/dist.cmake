# What a host needs, side by side: bin (all DLLs and programs), lib (import libraries), include
# (the public header and the companions' two).

add_custom_target(product DEPENDS
  plenxsdk LogHelper distributedfile plenxservice plenxhost plenxscenario plenxmsg plenxtrace
  dokan1_sys dokan1_dll dokanfuse1_dll dokan1_sys_newer dokan1_dll_newer dokanfuse1_dll_newer)

install(TARGETS plenxsdk LogHelper distributedfile
  RUNTIME DESTINATION bin
  LIBRARY DESTINATION bin
  ARCHIVE DESTINATION lib)
install(TARGETS plenxservice plenxhost plenxscenario plenxmsg plenxtrace RUNTIME DESTINATION bin)
install(TARGETS dokan1_sys dokan1_dll dokanfuse1_dll LIBRARY DESTINATION bin)
install(TARGETS dokan1_sys_newer dokan1_dll_newer dokanfuse1_dll_newer
  LIBRARY DESTINATION bin/upgrade)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/devservice/scenarios DESTINATION share/plenxsdk)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/plenxsdk DESTINATION include)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/companion/include/ DESTINATION include)
