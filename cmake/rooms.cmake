# A room is a static library of one folder; a test program holds the tests that lie beside its sources.

# kova_room(NAME SOURCES ... [POSIX ...] [WIN32 ...] [DEPENDS ...])
function(kova_room name)
  cmake_parse_arguments(ARG "" "" "SOURCES;POSIX;WIN32;DEPENDS" ${ARGN})
  if(WIN32)
    list(APPEND ARG_SOURCES ${ARG_WIN32})
  else()
    list(APPEND ARG_SOURCES ${ARG_POSIX})
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC kova_options ${ARG_DEPENDS})
endfunction()

# kova_test(NAME SOURCES ... DEPENDS ...): one test program, run by scripts/run_tests.sh in both builds.
function(kova_test name)
  if(NOT KOVA_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kova_options kova_test_main ${ARG_DEPENDS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  if(WIN32)
    # The test programs load the library's DLLs as a host does: from their own folder.
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  endif()
  set_property(GLOBAL APPEND PROPERTY KOVA_TEST_PROGRAMS ${name})
endfunction()
