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

if(KOVA_SANITIZE)
  target_compile_options(kova_options INTERFACE
    -O1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kova_options INTERFACE -fsanitize=address,undefined)
  target_compile_options(kova_quiet INTERFACE -O2)
endif()

if(WIN32)
  # Windows 10 and later; the plain names of the platform's functions are never the ANSI ones by accident.
  target_compile_definitions(kova_options INTERFACE _WIN32_WINNT=0x0A00 WINVER=0x0A00 NOMINMAX)
  # Nothing of the compiler's has to be installed on a workstation.
  add_link_options(-static)
endif()
