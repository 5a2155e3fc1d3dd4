# Windows from Debian: the mingw-w64 compilers with POSIX threads. A file for each processor sets ZUL_MINGW, the
# prefix of the tools' names, and reads this one.
#
# ZUL_WINDOWS_DEPENDENCIES: the folder with the libraries that packaging/windows/build.sh has built (a variable,
# or one of the environment).
if(NOT ZUL_WINDOWS_DEPENDENCIES)
  set(ZUL_WINDOWS_DEPENDENCIES "$ENV{ZUL_WINDOWS_DEPENDENCIES}")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZUL_WINDOWS_DEPENDENCIES)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${ZUL_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZUL_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${ZUL_MINGW}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${ZUL_MINGW})
if(ZUL_WINDOWS_DEPENDENCIES)
  list(APPEND CMAKE_FIND_ROOT_PATH "${ZUL_WINDOWS_DEPENDENCIES}")
  list(APPEND CMAKE_PREFIX_PATH "${ZUL_WINDOWS_DEPENDENCIES}")
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Qt's moc, uic and rcc are the ones of this machine.
set(QT_HOST_PATH /usr CACHE PATH "Qt of the machine that builds")
execute_process(COMMAND dpkg-architecture -qDEB_HOST_MULTIARCH OUTPUT_VARIABLE multiarch
  OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${multiarch}/cmake CACHE PATH "Its CMake files")

# The compiler's run-time libraries go into each result: a process has room for one libstdc++-6.dll only, and
# that may be the host's, of another version.
foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static")
endforeach()
