# zym_room(NAME [USES ROOM...] [LIBRARIES TARGET...])
#
# One room of the house: an object library that sees its own headers and those of the rooms it may
# use, and no others. Headers are reached as "zymcore/<room>/<Type>.h", in the tree and installed.
function(zym_room name)
  cmake_parse_arguments(ROOM "" "" "USES;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")

  set(view "${PROJECT_BINARY_DIR}/rooms/${name}")
  file(MAKE_DIRECTORY "${view}/zymcore")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${view}/zymcore/${name}" SYMBOLIC)

  add_library(zym_${name} OBJECT ${sources})
  target_include_directories(zym_${name} PUBLIC "$<BUILD_INTERFACE:${view}>")
  target_compile_features(zym_${name} PUBLIC cxx_std_20)
  # Every processor shall give the same last digit.
  target_compile_options(zym_${name} PRIVATE -ffp-contract=off)
  set_target_properties(zym_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(zym_${name} PRIVATE ${ROOM_LIBRARIES} zym_warnings)
  foreach(room IN LISTS ROOM_USES)
    target_link_libraries(zym_${name} PUBLIC zym_${room})
  endforeach()

  set_property(GLOBAL APPEND PROPERTY ZYM_ROOMS ${name})
  install(DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zymcore/${name}"
          FILES_MATCHING PATTERN "*.h")
endfunction()
