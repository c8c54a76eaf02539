# Puts the shared libraries that PROGRAMS need into FOLDER, with Qt's plugins from QT_PLUGINS, the
# licences of all of them, and TABLE with the versions filled in. Also writes .pantrywise-files, by which
# the script "install" knows what it lays down: these files, PROGRAMS and OTHERS. Needs dpkg, which knows
# the packages of the libraries.
cmake_minimum_required(VERSION 3.25)

set(plugins
  iconengines/libqsvgicon.so
  imageformats/libqsvg.so
  platforminputcontexts/libcomposeplatforminputcontextplugin.so
  platforminputcontexts/libibusplatforminputcontextplugin.so
  platforms/libqoffscreen.so # an import in the terminal
  platforms/libqwayland-generic.so
  platforms/libqxcb.so
  wayland-decoration-client/libbradient.so
  wayland-shell-integration/libxdg-shell.so
)
# It loads on desktops that have GTK. The archive must not bring GTK, which has to be the desktop's.
set(theme platformthemes/libqgtk3.so)

# What a system must have: GCC's C++ library (12, May 2022) and the C library (2.35, February 2022). The
# archive's Expat needs 2.36, but every desktop has Expat.
set(required "^(ld-linux-.*|lib(c|m|dl|rt|pthread|resolv|gcc_s|stdc[+][+]))[.]so")

# The sources of the libraries that the program always uses from the archive, since these decide how it
# works. Any other library is taken from the system if it is there: what finds fonts and reaches the
# display and the session bus must match the desktop, and the desktop's GTK shares most of the rest.
set(own "^(qt6-.*|icu|sqlite3)$")

set(compiled_in libsqlitecpp-dev rapidjson-dev)

function(put source destination) # relative to FOLDER
  get_filename_component(directory ${FOLDER}/${destination} DIRECTORY)
  file(MAKE_DIRECTORY ${directory})
  file(COPY_FILE ${source} ${FOLDER}/${destination})
  set_property(GLOBAL APPEND PROPERTY laid_down ${destination})
endfunction()

# Sets package_of_FILE for each file, and `packages` to all packages.
function(find_packages)
  foreach(file IN LISTS ARGN)
    string(REGEX REPLACE "^/usr" "" short ${file})
    list(APPEND paths ${file} ${short}) # dpkg knows a file by the path that its package gives it
  endforeach()
  execute_process(COMMAND dpkg-query --search ${paths} OUTPUT_VARIABLE found ERROR_QUIET)
  string(REPLACE "\n" ";" found "${found}")
  foreach(line IN LISTS found)
    if(line MATCHES "^([^:]+)[^/]*: (/usr)?(/.+)$")
      set(package_of_/usr${CMAKE_MATCH_3} ${CMAKE_MATCH_1})
    endif()
  endforeach()
  foreach(file IN LISTS ARGN)
    set(package ${package_of_${file}})
    if(NOT package)
      message(FATAL_ERROR "${file} belongs to no package, so that its licence is not known")
    endif()
    list(APPEND packages ${package})
    set(package_of_${file} ${package} PARENT_SCOPE)
  endforeach()
  list(REMOVE_DUPLICATES packages)
  set(packages ${packages} PARENT_SCOPE)
endfunction()

function(query package field result)
  execute_process(COMMAND dpkg-query --show --showformat "\${${field}}\n" ${package}
    OUTPUT_VARIABLE value COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "\n.*" "" value "${value}") # one line for each architecture
  set(${result} ${value} PARENT_SCOPE)
endfunction()

list(TRANSFORM plugins PREPEND ${QT_PLUGINS}/ OUTPUT_VARIABLE modules)
file(GET_RUNTIME_DEPENDENCIES EXECUTABLES ${PROGRAMS} MODULES ${modules}
  RESOLVED_DEPENDENCIES_VAR libraries
  PRE_EXCLUDE_REGEXES ${required})
foreach(library IN LISTS libraries)
  file(REAL_PATH ${library} file)
  list(APPEND files ${file})
endforeach()
list(APPEND plugins ${theme})
find_packages(${files} ${modules} ${QT_PLUGINS}/${theme})

foreach(library file IN ZIP_LISTS libraries files)
  get_filename_component(name ${library} NAME)
  query(${package_of_${file}} source:Package source)
  if(source MATCHES ${own})
    put(${file} lib/${name})
  else()
    put(${file} lib/fallback/${name})
  endif()
endforeach()
foreach(plugin IN LISTS plugins)
  put(${QT_PLUGINS}/${plugin} plugins/${plugin})
endforeach()

# The rows of the table are "| LIBRARY | PACKAGE | LICENCE |". The licences refer to the texts in
# /usr/share/common-licenses, so these are laid down too.
list(APPEND packages ${compiled_in})
file(READ ${TABLE} table)
foreach(package IN LISTS packages)
  query(${package} source:Package source)
  query(${package} source:Version version)
  string(REPLACE " | ${package} | " " | ${package} (${source} ${version}) | " filled "${table}")
  if(filled STREQUAL table)
    message(FATAL_ERROR "${TABLE} has no row for the package ${package}")
  endif()
  set(table "${filled}")

  set(copyright /usr/share/doc/${package}/copyright)
  put(${copyright} licences/${package}.txt)
  file(READ ${copyright} text)
  string(REGEX MATCHALL "/common-licenses/[A-Za-z0-9.-]*[A-Za-z0-9]" names "${text}")
  list(APPEND common ${names})
endforeach()
if(table MATCHES "\n[|] [^|\n]+ [|] ([a-z0-9][a-z0-9+.-]+) [|] [^|\n]+ [|]\n")
  message(FATAL_ERROR "${TABLE} names the package ${CMAKE_MATCH_1}, which the archive does not contain")
endif()
list(REMOVE_DUPLICATES common)
foreach(name IN LISTS common)
  put(/usr/share${name} licences${name}.txt)
endforeach()

file(WRITE ${FOLDER}/libraries.md "${table}")
get_property(laid_down GLOBAL PROPERTY laid_down)
foreach(program IN LISTS PROGRAMS)
  get_filename_component(name ${program} NAME)
  list(APPEND laid_down ${name})
endforeach()
list(APPEND laid_down ${OTHERS} libraries.md)
list(SORT laid_down)
list(JOIN laid_down "\n" lines)
file(WRITE ${FOLDER}/.pantrywise-files
  "# The files of Pantrywise, which an update replaces and a removal removes\n${lines}\n")
