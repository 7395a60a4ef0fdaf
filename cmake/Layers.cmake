# Which folders a target may include from, so that the table of docs/architecture.md is compiled.

# tesk_sees(TARGET FOLDER...): the target finds the headers of these folders of the checkout, as "folder/header.h", beside
# the public ones, and no others: in a folder of the build that has a link to each of them and nothing else.
function(tesk_sees target)
  set(view ${PROJECT_BINARY_DIR}/layers/${target})
  file(REMOVE_RECURSE ${view})
  foreach(folder IN LISTS ARGN)
    cmake_path(GET folder PARENT_PATH parent)
    if(IS_SYMLINK ${view}/${parent})
      message(FATAL_ERROR "${target} sees ${parent} and ${folder} in it")
    endif()
    file(MAKE_DIRECTORY ${view}/${parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${view}/${folder} SYMBOLIC)
  endforeach()
  target_include_directories(${target} PRIVATE ${view})
endfunction()
