# The standard library, and GoogleTest for tests, are parsed once a build, not once a source: kova_precompile(TARGET).
# Sources include what they use all the same; the benchmarks' build, which has no precompiled headers, holds them to it.
set(standard_headers
  <algorithm> <array> <charconv> <cstdint> <cstdio> <cstdlib> <cstring> <filesystem> <fstream> <functional>
  <initializer_list> <iterator> <map> <memory> <mutex> <optional> <random> <set> <span> <string> <string_view> <thread>
  <tuple> <utility> <vector>)

if(KOVA_PRECOMPILED_HEADERS)
  file(WRITE ${PROJECT_BINARY_DIR}/empty.cpp.new "")
  file(COPY_FILE ${PROJECT_BINARY_DIR}/empty.cpp.new ${PROJECT_BINARY_DIR}/empty.cpp ONLY_IF_DIFFERENT)
  add_library(kova_standard_headers OBJECT ${PROJECT_BINARY_DIR}/empty.cpp)
  target_link_libraries(kova_standard_headers PRIVATE kova_options)
  target_precompile_headers(kova_standard_headers PRIVATE ${standard_headers})
  if(KOVA_TESTS)
    add_library(kova_test_headers OBJECT ${PROJECT_BINARY_DIR}/empty.cpp)
    set_target_properties(kova_test_headers PROPERTIES KOVA_TEST_CODE ON)
    target_link_libraries(kova_test_headers PRIVATE kova_options kova_test_main)
    target_precompile_headers(kova_test_headers PRIVATE ${standard_headers} <gtest/gtest.h>)
  endif()
endif()

function(kova_precompile target)
  if(KOVA_PRECOMPILED_HEADERS)
    get_target_property(is_test ${target} KOVA_TEST_CODE)
    if(is_test)
      target_precompile_headers(${target} REUSE_FROM kova_test_headers)
    else()
      target_precompile_headers(${target} REUSE_FROM kova_standard_headers)
    endif()
  endif()
endfunction()
