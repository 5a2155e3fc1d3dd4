# What is installed, and where. Three components: "runtime" (a user of a host needs it), "devel" (who writes a host),
# "host" (the reference host). Every path is relative to the prefix, and what looks for something else of the
# installation goes there from its own place, so that the whole tree may stand anywhere.
include(CMakePackageConfigHelpers)

set(ZUL_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}/zul-messagebuilder")
set(ZUL_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/Zul_MessageBuilder")
set(ZUL_IDL_INSTALL_DIR "${CMAKE_INSTALL_DATADIR}/zul-messagebuilder/idl")
set(linux "${CMAKE_SOURCE_DIR}/packaging/linux")

# way(RESULT FROM TO): the relative path from one folder of the installation to another.
function(way result from to)
  file(RELATIVE_PATH path "/p/${from}" "/p/${to}")
  set(${result} "${path}" PARENT_SCOPE)
endfunction()

# compressed(TEMPLATE RESULT): fills a template in and compresses it, the same way at every time.
find_program(ZUL_GZIP gzip REQUIRED)
function(compressed template result)
  configure_file("${template}" "${result}" @ONLY)
  execute_process(COMMAND "${ZUL_GZIP}" -9nkf "${result}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# --- Libraries and programs

# The runtime stands beside the others in a build folder, and one way off in an installation. One path serves both: a
# path that is exchanged when files are installed is filled up with empty places before, which mean the current folder.
function(finds_libraries target)
  set(path "$ORIGIN")
  foreach(folder IN LISTS ARGN)
    way(to_library "${folder}" "${CMAKE_INSTALL_LIBDIR}")
    string(REGEX REPLACE "/$" "" to_library "${to_library}")
    list(APPEND path "$ORIGIN/${to_library}")
  endforeach()
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${path}" BUILD_WITH_INSTALL_RPATH ON)
endfunction()
finds_libraries(zul_automation)
finds_libraries(zul_sender)
finds_libraries(Zul_MessageBuilder "${ZUL_COMPONENT_DIR}")
finds_libraries(zulhost "${CMAKE_INSTALL_BINDIR}")

install(TARGETS zul_automation zul_idl EXPORT Zul_MessageBuilder
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT devel)
set_target_properties(zul_automation PROPERTIES EXPORT_NAME Automation)
set_target_properties(zul_idl PROPERTIES EXPORT_NAME Contracts)
target_include_directories(zul_idl SYSTEM INTERFACE "$<INSTALL_INTERFACE:${ZUL_INCLUDE_DIR}>")
install(TARGETS Zul_MessageBuilder LIBRARY DESTINATION "${ZUL_COMPONENT_DIR}" COMPONENT runtime)
install(TARGETS zulhost RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT host)
# A stand-in for the program that delivers, at the place below the host application's folder where that one would be.
install(TARGETS zul_sender RUNTIME DESTINATION "${ZUL_COMPONENT_DIR}/ZulSmsSender" COMPONENT host)

# --- Contracts

foreach(contract IN ITEMS Zul_SQL Zul_Controls Zul_Host Zul_MessageBuilder)
  # A host that reads type libraries looks for them beside the component.
  install(FILES "${ZUL_TLB_DIR}/${contract}.tlb" DESTINATION "${ZUL_COMPONENT_DIR}" COMPONENT runtime)
  install(FILES "${ZUL_IDL_DIR}/${contract}.h" DESTINATION "${ZUL_INCLUDE_DIR}" COMPONENT devel)
  install(FILES "${CMAKE_SOURCE_DIR}/idl/${contract}.idl" DESTINATION "${ZUL_IDL_INSTALL_DIR}" COMPONENT devel)
endforeach()
install(DIRECTORY "${CMAKE_SOURCE_DIR}/automation/shim/" DESTINATION "${ZUL_INCLUDE_DIR}" COMPONENT devel
  FILES_MATCHING PATTERN "*.h")

# --- For who builds a host: CMake and pkg-config

install(EXPORT Zul_MessageBuilder NAMESPACE Zul:: FILE Zul_MessageBuilderTargets.cmake
  DESTINATION "${ZUL_CMAKE_DIR}" COMPONENT devel)
configure_package_config_file("${linux}/Zul_MessageBuilderConfig.cmake.in"
  "${CMAKE_BINARY_DIR}/Zul_MessageBuilderConfig.cmake" INSTALL_DESTINATION "${ZUL_CMAKE_DIR}"
  PATH_VARS ZUL_COMPONENT_DIR ZUL_IDL_INSTALL_DIR)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/Zul_MessageBuilderConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/Zul_MessageBuilderConfig.cmake"
  "${CMAKE_BINARY_DIR}/Zul_MessageBuilderConfigVersion.cmake" DESTINATION "${ZUL_CMAKE_DIR}" COMPONENT devel)

way(ZUL_PREFIX_FROM_PC "${CMAKE_INSTALL_LIBDIR}/pkgconfig" "")
configure_file("${linux}/zul-automation.pc.in" "${CMAKE_BINARY_DIR}/zul-automation.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/zul-automation.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT devel)

# --- Documentation, and what a desktop shows of the reference host

set(docs "${CMAKE_SOURCE_DIR}/docs")
install(FILES "${docs}/operatore.md" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zul-messagebuilder" COMPONENT runtime)
install(DIRECTORY "${docs}/images" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zul-messagebuilder" COMPONENT runtime
  FILES_MATCHING PATTERN "*.png")
install(FILES "${docs}/embedding.md" "${docs}/host.md" "${docs}/architecture.md" "${docs}/windows.md" "${docs}/reliability.md"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zul-messagebuilder-dev" COMPONENT devel)
install(DIRECTORY "${docs}/examples" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zul-messagebuilder-dev" COMPONENT devel)
install(FILES "${docs}/images/rooms.svg" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zul-messagebuilder-dev/images"
  COMPONENT devel)
# Beside each other among the sources; installed, each package has a folder of its own.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${docs}/scenarios.md")
file(READ "${docs}/scenarios.md" scenarios)
string(REGEX REPLACE "\\]\\((host|reliability)\\.md" "](../zul-messagebuilder-dev/\\1.md" scenarios "${scenarios}")
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/scenarios.md" CONTENT "${scenarios}" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/scenarios.md" "${docs}/sqlserver.md" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zulhost"
  COMPONENT host)

compressed("${linux}/zulhost.1.in" "${CMAKE_BINARY_DIR}/zulhost.1")
install(FILES "${CMAKE_BINARY_DIR}/zulhost.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT host)
install(FILES "${linux}/org.zul.zulhost.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT host)
install(FILES "${linux}/org.zul.zulhost.svg" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps"
  COMPONENT host)
configure_file("${linux}/org.zul.zulhost.metainfo.xml.in" "${CMAKE_BINARY_DIR}/org.zul.zulhost.metainfo.xml" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/org.zul.zulhost.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo"
  COMPONENT host)

include(DebianPackages)
