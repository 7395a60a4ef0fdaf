# What every target of the house is compiled with.
add_library(tesk_options INTERFACE)
target_include_directories(tesk_options INTERFACE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
target_compile_options(tesk_options INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Werror)
# GCC 12 sees overlapping copies in the additions of std::string where there are none (its bug 105651).
target_compile_options(tesk_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(QUARN_LIMB_BITS)
  target_compile_definitions(tesk_options INTERFACE QUARN_LIMB_BITS=${QUARN_LIMB_BITS})
endif()

option(TESK_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
if(TESK_SANITIZE)
  target_compile_options(tesk_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                -fno-omit-frame-pointer)
  target_link_options(tesk_options INTERFACE -fsanitize=address,undefined)
endif()

option(TESK_FUZZ "Build the fuzz targets (needs clang)" OFF)
if(TESK_FUZZ)
  target_compile_options(tesk_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

option(TESK_COVERAGE "Instrument for coverage" OFF)
if(TESK_COVERAGE)
  # Counters hide from the compiler that a loop over the words of a number runs at least once.
  target_compile_options(tesk_options INTERFACE --coverage -Wno-maybe-uninitialized)
  target_link_options(tesk_options INTERFACE --coverage)
endif()

# A shared library that does not find all it needs fails to link, not to load.
if(NOT WIN32)
  string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,--no-undefined")
endif()

if(WIN32)
  # The compiler's runtime goes into each binary: nothing to ship beside it.
  target_link_options(tesk_options INTERFACE -static-libgcc -static-libstdc++)
endif()
