# The Debian packages, made by CPack from the installation's components: packaging/deb.sh.
#
#   zul-messagebuilder      runtime
#   zul-messagebuilder-dev  devel
#   zulhost                 host
set(debian "${CMAKE_SOURCE_DIR}/packaging/linux/debian")
set(packages runtime:zul-messagebuilder devel:zul-messagebuilder-dev host:zulhost)

foreach(pair IN LISTS packages)
  string(REPLACE ":" ";" pair "${pair}")
  list(GET pair 0 component)
  list(GET pair 1 package)
  set(folder "${CMAKE_BINARY_DIR}/debian/${package}")
  compressed("${debian}/changelog.in" "${folder}/changelog.Debian")
  install(FILES "${folder}/changelog.Debian.gz" "${debian}/copyright"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
endforeach()

# For all users, from the moment on in which the library is there, until it goes.
set(ZUL_REGISTRATION "zul-messagebuilder.ini")
foreach(script IN ITEMS postinst prerm)
  configure_file("${debian}/${script}.in" "${CMAKE_BINARY_DIR}/debian/${script}" @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Zul")
set(CPACK_PACKAGE_CONTACT "The authors of Zul_MessageBuilder <zul-messagebuilder@localhost>")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime devel host)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}/bin")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME zul-messagebuilder)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6svg6, qt6-translations-l10n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${CMAKE_BINARY_DIR}/debian/postinst;${CMAKE_BINARY_DIR}/debian/prerm;${debian}/triggers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "customer messaging for management applications
A host application loads this component into its process: the operator picks
customers by criteria, reviews them in a grid, ticks recipients and chooses
SMS, e-mail or push and a template; the messages are queued in the database.")

set(CPACK_DEBIAN_DEVEL_PACKAGE_NAME zul-messagebuilder-dev)
set(CPACK_DEBIAN_DEVEL_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "zul-messagebuilder (= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_DEVEL_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DEVEL_DESCRIPTION "customer messaging for management applications (hosts)
Contracts, headers, CMake and pkg-config files and documentation for who lets
an application load the customer-messaging component.")

set(CPACK_DEBIAN_HOST_PACKAGE_NAME zulhost)
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS "zul-messagebuilder (= ${PROJECT_VERSION}-1)")
set(CPACK_COMPONENT_HOST_DESCRIPTION "reference host of the customer-messaging component
A small management application that makes a demonstration database and shows
the windows of the customer-messaging component, plays scenarios on them, and
checks the connection object of another host.")
include(CPack)
