# The same scenarios on Windows' zulhost, under Wine. They share registry and display, so one is played after the other. The FTP
# server runs on the machine itself; test-windows.sh builds it.
file(GLOB scenarios CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.scenario")
foreach(scenario IN LISTS scenarios)
  get_filename_component(name "${scenario}" NAME_WE)
  add_test(NAME scenario_${name}
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/play.sh" $<TARGET_FILE:zulhost> $<TARGET_FILE:Zul_MessageBuilder>
      "${scenario}")
  set_tests_properties(scenario_${name} PROPERTIES TIMEOUT 300 LABELS scenario RESOURCE_LOCK "windows_registry;windows_display"
    ENVIRONMENT "ZUL_PLAY=wine")
endforeach()
