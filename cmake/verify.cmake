# Installs plenxverify as a folder, which a stranger takes to a Windows machine:
#     cmake --install FOLDER --component verify --prefix PLACE
# All programs lie in one folder, because each test program looks for its DLLs and for the others beside
# itself. plenxkit verify has the table of the stages that use them.

set(verify_tests
  both_worlds_test c_interface_test devservice_test endings_test hardening_test hostile_test
  rpc_interface_test system_test)
set(verify_helpers plenxkit_over_c c_interface_late_caller endings_late_caller)
set(visual_cpp_hosts visual_cpp_queue_host visual_cpp_observer_host)
add_custom_target(verify_programs DEPENDS
  product ${verify_tests} ${verify_helpers} ${visual_cpp_hosts})

set(place COMPONENT verify EXCLUDE_FROM_ALL)
install(TARGETS
  plenxsdk plenxsdk_c LogHelper distributedfile plenxservice plenxkit ${verify_tests} ${verify_helpers}
  RUNTIME DESTINATION programs ${place} ARCHIVE DESTINATION unused COMPONENT unused EXCLUDE_FROM_ALL)
install(TARGETS dokan1_sys dokan1_dll dokanfuse1_dll LIBRARY DESTINATION programs ${place})
install(TARGETS dokan1_sys_newer dokan1_dll_newer dokanfuse1_dll_newer
  LIBRARY DESTINATION programs/upgrade ${place})
foreach(host IN LISTS visual_cpp_hosts)
  install(PROGRAMS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${host}.exe DESTINATION programs ${place})
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/devservice/scenarios DESTINATION programs ${place})
install(FILES ${PROJECT_SOURCE_DIR}/kit/host/demo/demo.plenx DESTINATION programs ${place})
install(FILES ${PROJECT_SOURCE_DIR}/package/verify/verify.cmd
  ${PROJECT_SOURCE_DIR}/package/verify/README.txt DESTINATION . ${place})
