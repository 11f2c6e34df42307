# What may come from outside, by the name that a room gives it: CMake target, and its headers.
set(ZYM_OUTSIDE_ICU ICU::i18n ICU::uc)
set(ZYM_OUTSIDE_ICU_HEADERS "<unicode/[a-z0-9]+\\.h>")
set(ZYM_OUTSIDE_GLib PkgConfig::ZYM_GLIB)
set(ZYM_OUTSIDE_GLib_HEADERS "<(glib|glib-object|glib-unix)\\.h>|<glib/[a-z]+\\.h>")
set(ZYM_OUTSIDE_libxml2 PkgConfig::ZYM_XML2)
set(ZYM_OUTSIDE_libxml2_HEADERS "<libxml/[A-Za-z0-9]+\\.h>")
set(ZYM_OUTSIDE_RapidJSON "")
set(ZYM_OUTSIDE_RapidJSON_HEADERS "<rapidjson/[a-z/]+\\.h>")
set(ZYM_OUTSIDE_gdk-pixbuf PkgConfig::ZYM_PIXBUF)
set(ZYM_OUTSIDE_gdk-pixbuf_HEADERS "<gdk-pixbuf/[a-z-]+\\.h>")
set(ZYM_OUTSIDE_libarchive PkgConfig::ZYM_ARCHIVE)
set(ZYM_OUTSIDE_libarchive_HEADERS "<archive(_entry)?\\.h>")
set(ZYM_OUTSIDE_SQLite PkgConfig::ZYM_SQLITE)
set(ZYM_OUTSIDE_SQLite_HEADERS "<sqlite3\\.h>")
set(ZYM_OUTSIDE_CLI11 CLI11::CLI11)
set(ZYM_OUTSIDE_CLI11_HEADERS "<CLI/CLI\\.hpp>")
set(ZYM_OUTSIDE_POSIX "")
set(ZYM_OUTSIDE_POSIX_HEADERS "<([a-z]+|sys/[a-z]+)\\.h>")

# zym_check_includes(TARGET FOLDER DIR [USES ROOM...] [ALSO DIR...] [MAY REGEX] [FOR ROOM])
#
# Before TARGET is built, reads the includes of DIR's sources: only the rooms that USES names, those
# that they may use, its own, the folders ALSO and the outside headers MAY. FOR: the room whose
# internal/ it may look into.
function(zym_check_includes target)
  cmake_parse_arguments(CHECK "" "FOLDER;MAY;FOR" "USES;ALSO" ${ARGN})
  cmake_path(RELATIVE_PATH CHECK_FOLDER BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE folder)
  set(allowed "${folder}" ${CHECK_ALSO})
  foreach(room IN LISTS CHECK_USES)
    get_property(reach GLOBAL PROPERTY ZYM_REACH_${room})
    list(APPEND allowed ${reach})
  endforeach()
  list(REMOVE_DUPLICATES allowed)
  if(CHECK_FOR)
    get_property(internal GLOBAL PROPERTY ZYM_FOLDER_${CHECK_FOR})
  else()
    set(internal "${folder}")
  endif()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CHECK_FOLDER}/*.h" "${CHECK_FOLDER}/*.cpp")
  string(REPLACE "/" "." stamp "${folder}")
  set(stamp "${PROJECT_BINARY_DIR}/includes/${stamp}")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" -D "SOURCE=${PROJECT_SOURCE_DIR}" -D "FOLDER=${folder}" -D "USES=${CHECK_USES}"
            -D "ALLOWED=${allowed}" -D "INTERNAL=${internal}" -D "MAY=${CHECK_MAY}" -D "STAMP=${stamp}"
            -P "${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake"
    DEPENDS ${sources} "${CMAKE_CURRENT_SOURCE_DIR}/CMakeLists.txt" "${PROJECT_SOURCE_DIR}/docs/architecture.md"
            "${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake"
    COMMENT "" VERBATIM)
  string(REPLACE "/" "_" name "includes_${folder}")
  add_custom_target(${name} DEPENDS "${stamp}")
  add_dependencies(${target} ${name})
endfunction()

# zym_room([USES ROOM...] [OUTSIDE NAME...])
#
# One room of the house: the folder of this CMakeLists.txt with its plain subfolders, an object
# library named after it (a folder of the program with app_ before). USES: the rooms it may include,
# and what they may; OUTSIDE: what its .cpp files may take from outside. Its internal/ is its own and
# is not installed.
function(zym_room)
  cmake_parse_arguments(ROOM "" "" "USES;OUTSIDE" ${ARGN})
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME name)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE folder)
  if(folder MATCHES "^app/")
    set(name "app_${name}")
  endif()

  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  file(GLOB_RECURSE nested "${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt")
  set(skipped "PATTERN;internal;EXCLUDE")
  foreach(room IN LISTS nested)
    cmake_path(GET room PARENT_PATH room)
    list(FILTER sources EXCLUDE REGEX "^${room}/")
    cmake_path(GET room FILENAME room)
    list(APPEND skipped PATTERN ${room} EXCLUDE)
  endforeach()

  set(reach "${folder}")
  add_library(zym_${name} OBJECT ${sources})
  target_include_directories(zym_${name} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")
  target_compile_features(zym_${name} PUBLIC cxx_std_20)
  # Every processor shall give the same last digit.
  target_compile_options(zym_${name} PRIVATE -ffp-contract=off)
  set_target_properties(zym_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(zym_${name} PRIVATE zym_warnings)
  foreach(room IN LISTS ROOM_USES)
    target_link_libraries(zym_${name} PUBLIC zym_${room})
    get_property(theirs GLOBAL PROPERTY ZYM_REACH_${room})
    list(APPEND reach ${theirs})
  endforeach()
  set(may "")
  foreach(outside IN LISTS ROOM_OUTSIDE)
    target_link_libraries(zym_${name} PRIVATE ${ZYM_OUTSIDE_${outside}})
    string(APPEND may "|${ZYM_OUTSIDE_${outside}_HEADERS}")
  endforeach()
  string(REGEX REPLACE "^\\|" "" may "${may}")

  list(REMOVE_DUPLICATES reach)
  set_property(GLOBAL PROPERTY ZYM_REACH_${name} "${reach}")
  set_property(GLOBAL PROPERTY ZYM_FOLDER_${name} "${folder}")
  zym_check_includes(zym_${name} FOLDER "${CMAKE_CURRENT_SOURCE_DIR}" USES ${ROOM_USES} MAY "${may}")
  if(folder MATCHES "^app/")
    return()
  endif()
  set_property(GLOBAL APPEND PROPERTY ZYM_ROOMS ${name})
  install(DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}"
          FILES_MATCHING PATTERN "*.h" ${skipped})
endfunction()
