include(CMakeFindDependencyMacro)
find_dependency(Qt6Gui)
if(NOT TARGET Qt6::Svg)
  get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
  add_library(Qt6::Svg STATIC IMPORTED)
  set_target_properties(Qt6::Svg PROPERTIES IMPORTED_LOCATION "${prefix}/lib/libSvg.a"
    INTERFACE_INCLUDE_DIRECTORIES "${prefix}/include/QtSvg" INTERFACE_LINK_LIBRARIES Qt6::Gui)
endif()
