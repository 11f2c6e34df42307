# The install tree as a host meets it: the example in README.md is built against the installed
# package, with the shared and the static library, and must print what README.md says it prints.
#
# cmake -D SOURCE=... -D BUILD=... -D COMPILER=... -D WORK=... -P InstallTest.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
endfunction()

function(take language name)
  if(NOT readme MATCHES "\n```${language}\n([^`]*)```\n")
    message(FATAL_ERROR "README.md has no ${language} block")
  endif()
  set(${name} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/prefix")

file(READ "${SOURCE}/README.md" readme)
take(cmake lists)
take(cpp code)
take(text expected)

foreach(library IN ITEMS zymcore zymcore_static)
  set(host "${WORK}/${library}")
  file(WRITE "${host}/main.cpp" "${code}")
  string(REPLACE "ZymCore::zymcore" "ZymCore::${library}" hostLists "${lists}")
  file(WRITE "${host}/CMakeLists.txt" "${hostLists}")
  run("${CMAKE_COMMAND}" -G Ninja -S "${host}" -B "${host}/build" "-DCMAKE_PREFIX_PATH=${WORK}/prefix"
      "-DCMAKE_CXX_COMPILER=${COMPILER}")
  run("${CMAKE_COMMAND}" --build "${host}/build")
  execute_process(COMMAND "${host}/build/host" RESULT_VARIABLE status OUTPUT_VARIABLE printed)
  if(NOT status EQUAL 0 OR NOT printed STREQUAL expected)
    message(FATAL_ERROR "${library}: exit ${status}, printed\n${printed}instead of\n${expected}")
  endif()
endforeach()

# The installed program finds its library and its resources where the tree was put.
execute_process(COMMAND "${WORK}/prefix/bin/zym" calc "${WORK}/prefix/share/zym/examples/dry-stout.wm2"
                WORKING_DIRECTORY "${WORK}" RESULT_VARIABLE status OUTPUT_VARIABLE printed)
if(NOT status EQUAL 0 OR NOT printed MATCHES "Dry Stout")
  message(FATAL_ERROR "installed zym: exit ${status}, printed\n${printed}")
endif()
