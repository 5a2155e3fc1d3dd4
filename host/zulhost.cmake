# The program zulhost. It links nothing of the component: that is loaded when it runs.
add_executable(zulhost "${CMAKE_SOURCE_DIR}/host/main.cpp")
target_link_libraries(zulhost PRIVATE zul_host_session)
target_compile_definitions(zulhost PRIVATE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
zul_warnings(zulhost)

# The program that the component starts, where the host application's folder is this one.
if(NOT TARGET zul_sender)
  add_subdirectory("${CMAKE_SOURCE_DIR}/sender" "${CMAKE_BINARY_DIR}/sender")
endif()
add_dependencies(zulhost zul_sender)
