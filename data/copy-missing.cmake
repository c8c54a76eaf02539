# Copies the recipes of folder FROM to folder TO. One that is there stays as it is; a copy that is
# cut short counts as none.
file(GLOB recipes RELATIVE ${FROM} ${FROM}/*.srf)
foreach(recipe IN LISTS recipes)
  set(copy ${TO}/${recipe})
  if(NOT EXISTS ${copy} AND NOT IS_SYMLINK ${copy})
    file(COPY_FILE ${FROM}/${recipe} ${copy}.new)
    file(RENAME ${copy}.new ${copy})
  endif()
endforeach()
