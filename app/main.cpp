#include <iostream>

#include "app/Host.h"
#include "app/Program.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/values/ProcessTearDown.h"

int main(int argc, char** argv) {
  constexpr int badOutput = 1;
  zym::host::setUpLibrary();
  const int exitCode = zym::host::runProgram({argv + (argc > 0 ? 1 : 0), argv + argc},
                                             zym::host::CalledFrom::Process);
  zym::tearDownProcess();
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "zym: " << zym::host::label("can't write to standard output") << '\n';
    return badOutput;
  }
  return exitCode;
}
