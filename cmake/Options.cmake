# What every target is compiled with.
add_library(tesk_options INTERFACE)
target_include_directories(tesk_options INTERFACE ${PROJECT_SOURCE_DIR}/include)
target_compile_options(tesk_options INTERFACE -Wall -Wextra -Wnon-virtual-dtor)
# GCC 12 sees overlapping copies in the additions of std::string where there are none (its bug 105651). Clang warns of
# numbers returned through C linkage; both sides are C++.
target_compile_options(tesk_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
                                              $<$<CXX_COMPILER_ID:Clang>:-Wno-return-type-c-linkage>)
# Doubles are converted exactly, with their zeros, infinities and NaNs, whatever the flags say of speed.
foreach(flags CMAKE_CXX_FLAGS CMAKE_CXX_FLAGS_DEBUG CMAKE_CXX_FLAGS_RELEASE CMAKE_CXX_FLAGS_RELWITHDEBINFO)
  string(REPLACE "-ffast-math" "" ${flags} "${${flags}}")
  string(REPLACE "-Ofast" "-O3" ${flags} "${${flags}}")
endforeach()
if(QUARN_LIMB_BITS)
  target_compile_definitions(tesk_options INTERFACE QUARN_LIMB_BITS=${QUARN_LIMB_BITS})
endif()

# Headers take longer than most sources, so that a build from nothing takes a third of the time when several sources are
# compiled as one; names in the files of a folder have to differ then, those without linkage too. OFF: none; ON: those
# folders that are seldom worked at; ALL: every folder, as a build that nobody will change files of.
set(TESK_UNITY ON CACHE STRING "Compile several sources as one: OFF, ON: in some folders, ALL: in all")

# What one source defines, the next ones see as if a header had declared it.
if(TESK_UNITY STREQUAL "ALL")
  target_compile_options(tesk_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
else()
  target_compile_options(tesk_options INTERFACE -Wshadow)
endif()

# Levels of optimisation: of code that takes longer to compile than it ever runs, and of code that leaves its time to the
# number library, called for every operation. A build of everything at once, which someone waits for, takes the next lower
# ones: they save a quarter of those folders' compile time, and cost routines some 2 % of theirs.
if(TESK_UNITY STREQUAL "ALL" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(TESK_COLD $<$<CONFIG:Release>:-Og>)
  set(TESK_LOOPS $<$<CONFIG:Release>:-O1>)
  # At such levels GCC sees uninitialised values in moved temporaries. Memory for speed: it collects its garbage less often.
  target_compile_options(tesk_options INTERFACE -Wno-maybe-uninitialized --param=ggc-min-heapsize=262144)
else()
  set(TESK_COLD $<$<CONFIG:Release>:-O1>)
  set(TESK_LOOPS $<$<CONFIG:Release>:-O2>)
endif()

# tesk_unity(TARGET BATCH ALWAYS): this many sources of the target are compiled as one, or all of them if 0.
function(tesk_unity target batch always)
  if(TESK_UNITY STREQUAL "ALL" OR (TESK_UNITY AND always))
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${batch})
  endif()
endfunction()

option(TESK_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
if(TESK_SANITIZE)
  add_compile_options(
    "$<$<COMPILE_LANGUAGE:CXX>:-fsanitize=address,undefined;-fno-sanitize-recover=all;-fno-omit-frame-pointer>")
  add_link_options(-fsanitize=address,undefined)
endif()

option(TESK_TSAN "Build with the thread sanitizer" OFF)
if(TESK_TSAN)
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-fsanitize=thread;-fno-omit-frame-pointer>")
  add_link_options(-fsanitize=thread)
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

if(WIN32)
  include(cmake/platform/pe.cmake)
else()
  include(cmake/platform/elf.cmake)
endif()
