# Compiler options of the project's own code, in one place. Third-party code gets kova_quiet instead.
add_library(kova_options INTERFACE)
add_library(kova_quiet INTERFACE)
target_include_directories(kova_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
# For the compiler only: resources are compiled too.
target_compile_options(kova_options INTERFACE "$<$<COMPILE_LANGUAGE:C,CXX>:\
-Wall;-Wextra;-Wpedantic;-Wshadow;-Wnon-virtual-dtor;-Woverloaded-virtual;-Wundef;-Werror;\
-fexec-charset=CP932;-finput-charset=UTF-8>")
target_compile_options(kova_quiet INTERFACE -w)

# GCC 12 warns of overlapping copies that cannot be in its own std::string (its bug 105651) when optimising.
target_compile_options(kova_options INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-Wno-restrict>)
# In a precompiled header it no longer knows that std::string is the system's, and warns of it in these words, too.
if(KOVA_PRECOMPILED_HEADERS)
  target_compile_options(kova_options INTERFACE
    "$<$<COMPILE_LANGUAGE:C,CXX>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>")
endif()

# Tests are compiled more often than they run: their own code is not optimised (KOVA_TEST_CODE is set by kova_test). The
# code under test is compiled the same in every program.
set(is_test "$<BOOL:$<TARGET_PROPERTY:KOVA_TEST_CODE>>")
if(KOVA_SANITIZE)
  target_compile_options(kova_options INTERFACE
    -O$<IF:${is_test},0,1> -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # In a test's own code these four triple the time to compile, and AddressSanitizer sees what most of them see.
    "$<${is_test}:-fno-sanitize=null,alignment,vptr,object-size>")
  target_link_options(kova_options INTERFACE -fsanitize=address,undefined)
  target_compile_options(kova_quiet INTERFACE -O1)
elseif(WIN32)
  target_compile_options(kova_options INTERFACE "$<$<AND:${is_test},$<COMPILE_LANGUAGE:C,CXX>>:-O0;-g0>")
endif()

if(WIN32)
  # Windows 10 and later; the plain names of the platform's functions are never the ANSI ones by accident.
  target_compile_definitions(kova_options INTERFACE _WIN32_WINNT=0x0A00 WINVER=0x0A00 NOMINMAX)
  # Nothing of the compiler's has to be installed on a workstation.
  add_link_options(-static)
else()
  # One form of position independence for libraries and programs, so that they share their precompiled headers.
  add_compile_options(-fPIC)
endif()

# The compiler's cache, where it is installed.
find_program(ccache ccache)
if(ccache)
  add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-fpch-preprocess>)
  foreach(language C CXX)
    set(CMAKE_${language}_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${ccache})
  endforeach()
endif()
