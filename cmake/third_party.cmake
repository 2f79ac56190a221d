# SQLite: the amalgamation out of a pinned npm package (see package.json).
set(sqlite_dir ${PROJECT_SOURCE_DIR}/node_modules/better-sqlite3/deps/sqlite3)
if(NOT EXISTS ${sqlite_dir}/sqlite3.c)
  message(FATAL_ERROR "sqlite3.c is missing: run ./test.sh or scripts/setup.sh once, it installs the pinned sources")
endif()
add_library(sqlite3 STATIC ${sqlite_dir}/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${sqlite_dir})
target_link_libraries(sqlite3 PRIVATE kova_quiet)
target_compile_definitions(sqlite3 PRIVATE
  SQLITE_THREADSAFE=1 SQLITE_OMIT_LOAD_EXTENSION SQLITE_DQS=0 SQLITE_DEFAULT_MEMSTATUS=0
  SQLITE_OMIT_DEPRECATED SQLITE_OMIT_SHARED_CACHE SQLITE_TEMP_STORE=2)
if(NOT WIN32)
  find_package(Threads REQUIRED)
  target_link_libraries(sqlite3 PUBLIC Threads::Threads m)
endif()

# GoogleTest: built from the sources in Debian's googletest package, for both builds.
if(KOVA_TESTS)
  set(gtest_dir /usr/src/googletest/googletest)
  if(NOT EXISTS ${gtest_dir}/src/gtest-all.cc)
    message(FATAL_ERROR "GoogleTest's sources are missing: run ./test.sh or scripts/setup.sh once")
  endif()
  add_library(kova_test_main STATIC ${gtest_dir}/src/gtest-all.cc ${PROJECT_SOURCE_DIR}/tests/test_main.cpp)
  target_include_directories(kova_test_main SYSTEM PUBLIC ${gtest_dir}/include PRIVATE ${gtest_dir})
  target_link_libraries(kova_test_main PRIVATE kova_quiet)
  if(NOT WIN32)
    target_link_libraries(kova_test_main PUBLIC Threads::Threads)
  endif()
endif()
