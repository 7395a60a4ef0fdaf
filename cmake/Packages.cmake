# Packages of Debian that a part of the build needs, so that what is missing can be named all at once.

# tesk_find_header(VARIABLE HEADER PACKAGE): as find_path. A header that is not there adds the package to `missing`. Cross
# builds look here too: only libraries that consist of headers are used in those.
macro(tesk_find_header variable header package)
  find_path(${variable} ${header} NO_CMAKE_FIND_ROOT_PATH)
  if(NOT ${variable})
    list(APPEND missing ${package})
  endif()
endmacro()

# tesk_find_library(VARIABLE NAME PACKAGE): the same for a library.
macro(tesk_find_library variable name package)
  find_library(${variable} ${name})
  if(NOT ${variable})
    list(APPEND missing ${package})
  endif()
endmacro()

# tesk_complete(RESULT OPTION TITLE): whether nothing is missing for this part. If something is, a part that was asked for is
# an error, and one that is built where it can be is left out, with a line that names the packages.
function(tesk_complete result option title)
  if(missing)
    list(REMOVE_DUPLICATES missing)
    list(JOIN missing " " packages)
    if("${${option}}" STREQUAL "AUTO")
      message(STATUS "Without ${title}: apt install ${packages}")
    else()
      message(FATAL_ERROR "${option} is ON, and packages are missing for ${title}:\n  apt install ${packages}")
    endif()
    set(${result} FALSE PARENT_SCOPE)
  else()
    set(${result} TRUE PARENT_SCOPE)
  endif()
endfunction()
