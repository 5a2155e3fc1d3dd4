# How every target of the house is built: one place for the language, the warnings, the sanitizers and where
# the results stand.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_BUILD_RPATH "$ORIGIN")

# Where an installation has the component, beside its type libraries and the program that it starts, and the way there
# from a program of the same installation.
set(ZUL_COMPONENT_DIR "${CMAKE_INSTALL_LIBDIR}/zul-messagebuilder")
file(RELATIVE_PATH ZUL_COMPONENT_FROM_PROGRAM "/p/${CMAKE_INSTALL_BINDIR}" "/p/${ZUL_COMPONENT_DIR}")

# moc and uic read sources alone: they need not wait for the libraries that a target links.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)

find_program(ZUL_CCACHE ccache)
if(ZUL_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER "${ZUL_CCACHE}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${ZUL_CCACHE}")
endif()
find_program(ZUL_MOLD mold)
if(ZUL_MOLD AND NOT WIN32)
  add_link_options(-fuse-ld=mold)
endif()

if(ZUL_UNITY)
  set(CMAKE_UNITY_BUILD ON)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 10)
  # A class that is private to a source is no class of a header just because another source came before it.
  add_compile_options("$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>")
endif()

if(WIN32)
  # The thread-safe forms of the C library's time functions.
  add_compile_definitions(_POSIX_THREAD_SAFE_FUNCTIONS=200112L)
  # Resources are packed by this machine's Qt, which knows a packing that the one of Windows was built without.
  set(CMAKE_AUTORCC_OPTIONS --no-zstd)
  set(ZUL_TEST_RUNNER "${CMAKE_SOURCE_DIR}/tests/run-under-wine.sh")
else()
  set(ZUL_TEST_RUNNER "${CMAKE_SOURCE_DIR}/tests/run-in-locale.sh")
endif()

# Whatever gets past the checks of our own code meets a guarded stack, checked copies (in release builds; they need
# optimisation), tables that nobody can overwrite once the library is loaded, and jumps that land where a jump may.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON) # libraries are found beside each other, wherever the build folder is moved to
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  add_compile_options(-fstack-protector-strong "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    add_compile_options(-fcf-protection=full)
  endif()
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()

if(ZUL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(ZUL_FUZZ)
  add_compile_options(-fsanitize=address,undefined,fuzzer-no-link -fno-omit-frame-pointer -g)
  add_link_options(-fsanitize=address,undefined)
endif()

# zul_warnings(TARGET): the warnings that our own code is free of, as errors.
# GCC 12 sees an overlap in "text" + std::string that is not there. Its option is followed by clang-tidy too, which
# reads the same command line.
function(zul_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
    -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-unknown-warning-option;-Wno-restrict>")
  if(ZUL_UNITY)
    # Clang takes a variable for a shadow of one that is private to another source of the blob.
    target_compile_options(${target} PRIVATE "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-shadow>")
  endif()
  target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}")
endfunction()

# zul_room(NAME SOURCES … LIBS …): a static library zul_NAME of a room; headers are included as "room/File.h".
function(zul_room name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_library(zul_${name} STATIC ${ARG_SOURCES})
  target_include_directories(zul_${name} PUBLIC "${CMAKE_SOURCE_DIR}")
  target_link_libraries(zul_${name} PUBLIC ${ARG_LIBS})
  zul_warnings(zul_${name})
endfunction()

# zul_apart(FILE …): sources that are compiled alone also in a unity build, because names that are private to them
# stand in another source of their target too.
function(zul_apart)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# zul_all_apart(TARGET …): the same for whole targets, where each source has its own procedure() or sourceName.
function(zul_all_apart)
  set_target_properties(${ARGN} PROPERTIES UNITY_BUILD OFF)
endfunction()

# zul_qt_room(NAME SOURCES … LIBS …): the same for a room with widgets: moc, uic and rcc run over it.
function(zul_qt_room name)
  zul_room(${name} ${ARGN})
  set_target_properties(zul_${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
  target_compile_definitions(zul_${name} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
  target_link_libraries(zul_${name} PUBLIC Qt6::Widgets)
endfunction()

# What the leak checker of the sanitizers runs with. It takes a thread's block of a library's variables for one of an
# old C library where the block begins 16 bytes behind a page, reads a length from what stands before it, and crashes
# while it looks for leaks at the end ("Tracer caught signal 11"); without intercept_tls_get_addr it does not guess.
set(ZUL_LSAN_OPTIONS
  "suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0:intercept_tls_get_addr=0")

# zul_test(NAME SOURCES … LIBS … [QT] [TIMEOUT n] [LABELS …]): a GoogleTest program, run without a
# display under the locale of the run (tests/run-in-locale.sh, or tests/run-under-wine.sh). With QT, moc runs over the sources and tests/QtTestMain.cpp supplies main.
function(zul_test name)
  cmake_parse_arguments(ARG "QT" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 900)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests"
    BUILD_RPATH "$ORIGIN/../bin")
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gmock)
  zul_warnings(${name})
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/QtTestMain.cpp")
    target_link_libraries(${name} PRIVATE Qt6::Widgets Qt6::Test)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  add_test(NAME ${name} COMMAND "${ZUL_TEST_RUNNER}" "$<TARGET_FILE:${name}>")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=${ZUL_LSAN_OPTIONS}")
  if(WIN32 AND ARG_QT)
    # There is one display, and one window on it has the keyboard.
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK windows_display)
  endif()
endfunction()
