# The check of includes itself: a small house with one fault of each kind, which it must name, and
# the same house without them, which it must let pass.
#
# cmake -D SOURCE=... -D WORK=... -P IncludesTest.cmake
file(REMOVE_RECURSE "${WORK}")
set(door "# Holds: a\n# Does not hold: b\n# Read first: c\n")
file(WRITE "${WORK}/docs/architecture.md" "| `zymcore/low/` |\n| `zymcore/high/` |\n")
foreach(room IN ITEMS low high)
  file(WRITE "${WORK}/zymcore/${room}/CMakeLists.txt" "${door}")
  file(WRITE "${WORK}/zymcore/${room}/${room}.h" "#include <vector>\n")
  file(WRITE "${WORK}/zymcore/${room}/internal/own.h" "")
endforeach()

function(check folder uses allowed internal result)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -D "SOURCE=${WORK}" -D "FOLDER=${folder}" -D "USES=${uses}" -D "ALLOWED=${allowed}"
            -D "INTERNAL=${internal}" -D "MAY=<glib\\.h>" -D "STAMP=${WORK}/stamp"
            -P "${SOURCE}/cmake/CheckIncludes.cmake"
    RESULT_VARIABLE status ERROR_VARIABLE said OUTPUT_QUIET)
  string(REGEX REPLACE "[ \n]+" " " said "${said}")
  set(${result} "${status} ${said}" PARENT_SCOPE)
endfunction()

function(expect_fault file text sentence folder uses allowed internal)
  file(WRITE "${WORK}/${file}" "${text}\n")
  check("${folder}" "${uses}" "${allowed}" "${internal}" said)
  file(REMOVE "${WORK}/${file}")
  string(FIND "${said}" "${sentence}" found)
  if(said MATCHES "^0 " OR found EQUAL -1)
    message(SEND_ERROR "${file} with ${text}: expected \"${sentence}\", got \"${said}\"")
  endif()
endfunction()

expect_fault(zymcore/low/a.cpp [[#include "zymcore/high/high.h"]]
             "zymcore/low may use no other room and what they use, not zymcore/high"
             zymcore/low "" zymcore/low zymcore/low)
expect_fault(zymcore/low/internal/a.cpp [[#include "zymcore/high/high.h"]] "not zymcore/high"
             zymcore/low "" zymcore/low zymcore/low)
expect_fault(zymcore/high/sub/a.cpp [[# include "zymcore/low/internal/own.h"]] "internal to zymcore/low"
             zymcore/high low "zymcore/high;zymcore/low" zymcore/high)
expect_fault(zymcore/high/a.cpp [[#include "high.h"]] "no path from the root"
             zymcore/high low "zymcore/high;zymcore/low" zymcore/high)
expect_fault(zymcore/high/a.cpp [[#include <sqlite3.h>]] "does not take from outside"
             zymcore/high low "zymcore/high;zymcore/low" zymcore/high)
expect_fault(zymcore/high/a.h [[#include <glib.h>]] "no public header"
             zymcore/high low "zymcore/high;zymcore/low" zymcore/high)
expect_fault(tests/low/a.cpp [[#include "zymcore/high/high.h"]] "not zymcore/high"
             tests/low low "tests/low;zymcore/low" zymcore/low)
expect_fault(zymcore/low/b/CMakeLists.txt "zym_room()" "must open with three lines"
             zymcore/low/b "" zymcore/low/b zymcore/low/b)
expect_fault(zymcore/low/b/CMakeLists.txt "${door}" "no row | `zymcore/low/b/` |"
             zymcore/low/b "" zymcore/low/b zymcore/low/b)

file(WRITE "${WORK}/zymcore/high/a.cpp"
     "#include <glib.h>\n#include <vector>\n#include \"zymcore/low/low.h\"\n#include \"zymcore/high/internal/own.h\"\n")
file(WRITE "${WORK}/tests/low/a.cpp" "#include \"zymcore/low/internal/own.h\"\n")
check(zymcore/high low "zymcore/high;zymcore/low" zymcore/high said)
check(tests/low low "tests/low;zymcore/low" zymcore/low also)
if(NOT said MATCHES "^0 " OR NOT also MATCHES "^0 ")
  message(SEND_ERROR "A sound house was refused: ${said}${also}")
endif()
