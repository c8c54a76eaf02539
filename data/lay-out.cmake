# Puts data.rbk, made by the tool MAKEDATABASE, and the recipes into FOLDER. Existing files are kept,
# because they belong to the user. Each recipe is copied under a temporary name and then renamed, so
# that an interrupted copy is not taken for an existing file.
cmake_minimum_required(VERSION 3.25)
file(MAKE_DIRECTORY ${FOLDER}/recipes)
execute_process(
  COMMAND ${MAKEDATABASE} ${FOLDER}/data.rbk
          ${CMAKE_CURRENT_LIST_DIR}/ingredients.txt ${CMAKE_CURRENT_LIST_DIR}/utensils.txt
  COMMAND_ERROR_IS_FATAL ANY)
file(GLOB recipes RELATIVE ${CMAKE_CURRENT_LIST_DIR} ${CMAKE_CURRENT_LIST_DIR}/recipes/*.srf)
foreach(recipe IN LISTS recipes)
  set(copy ${FOLDER}/${recipe})
  if(NOT EXISTS ${copy} AND NOT IS_SYMLINK ${copy})
    file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/${recipe} ${copy}.new)
    file(RENAME ${copy}.new ${copy})
  endif()
endforeach()
