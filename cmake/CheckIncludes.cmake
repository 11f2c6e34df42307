# The rule of a folder that the compiler can't see, since all share one include folder. Fails with a
# sentence for each include that the folder may not have.
#
# cmake -D SOURCE=... -D FOLDER=... -D USES=... -D ALLOWED=... -D INTERNAL=... -D MAY=... -D STAMP=...
#       -P CheckIncludes.cmake
# USES names the rooms for the sentence; ALLOWED are the folders that may be included, INTERNAL the
# one whose internal/ is open, MAY the other headers that .cpp files may include.
cmake_policy(VERSION 3.25)
set(standard "<[a-z_0-9]+>")
set(faults "")

# The room a file belongs to: the nearest folder above it with a CMakeLists.txt. Among the tests each
# folder stands for itself.
function(find_room file result)
  cmake_path(GET file PARENT_PATH folder)
  while(folder AND NOT folder MATCHES "^tests/" AND NOT EXISTS "${SOURCE}/${folder}/CMakeLists.txt")
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
  set(${result} "${folder}" PARENT_SCOPE)
endfunction()

string(REPLACE ";" ", " uses "${USES}")
if(NOT uses)
  set(uses "no other room")
endif()

file(GLOB_RECURSE files RELATIVE "${SOURCE}" "${SOURCE}/${FOLDER}/*.h" "${SOURCE}/${FOLDER}/*.cpp")
foreach(file IN LISTS files)
  find_room("${file}" room)
  if(NOT room STREQUAL FOLDER)
    continue()  # a room within this one, checked by itself
  endif()
  file(STRINGS "${SOURCE}/${file}" lines REGEX "^[ \t]*#[ \t]*include")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*([<\"][^>\"]*[>\"]).*" "\\1" name "${line}")
    if(name MATCHES "^\"(.*)\"$")
      set(path "${CMAKE_MATCH_1}")
      find_room("${path}" room)
      if(NOT EXISTS "${SOURCE}/${path}")
        list(APPEND faults "${file} includes ${name}, which is no path from the root of the repository")
      elseif(path MATCHES "/internal/" AND NOT path MATCHES "^${INTERNAL}/internal/")
        list(APPEND faults "${file} includes ${name}, but what is internal to ${room} is for that room alone")
      elseif(NOT room IN_LIST ALLOWED)
        list(APPEND faults "${file} includes ${name}, but ${FOLDER} may use ${uses} and what they use, not ${room}")
      endif()
    elseif(NOT name MATCHES "^${standard}$")
      if(NOT MAY OR NOT name MATCHES "^(${MAY})$")
        list(APPEND faults "${file} includes ${name}, which its CMakeLists.txt does not take from outside")
      elseif(FOLDER MATCHES "^zymcore/" AND NOT file MATCHES "\\.cpp$" AND NOT file MATCHES "/internal/")
        list(APPEND faults "${file} includes ${name}, but no public header shows what is from outside")
      endif()
    endif()
  endforeach()
endforeach()

# A newcomer reads what a room is for at its door and in the plan of the house.
if(FOLDER MATCHES "^(zymcore|app)(/|$)")
  file(STRINGS "${SOURCE}/${FOLDER}/CMakeLists.txt" lines LIMIT_COUNT 3)
  list(FILTER lines INCLUDE REGEX "^# ")
  list(LENGTH lines count)
  if(count LESS 3)
    list(APPEND faults
         "${FOLDER}/CMakeLists.txt must open with three lines: # what it holds, # what it doesn't and where that lives, # which header to read first")
  endif()
  file(READ "${SOURCE}/docs/architecture.md" plan)
  string(FIND "${plan}" "| `${FOLDER}/` |" row)
  if(row EQUAL -1)
    list(APPEND faults "docs/architecture.md has no row | `${FOLDER}/` |")
  endif()
endif()

if(faults)
  list(JOIN faults "\n  " faults)
  message(FATAL_ERROR "The house does not allow this:\n  ${faults}")
endif()
cmake_path(GET STAMP PARENT_PATH folder)
file(MAKE_DIRECTORY "${folder}")
file(TOUCH "${STAMP}")
