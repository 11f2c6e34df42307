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
  std::cout.flush();
  const bool isWritten = static_cast<bool>(std::cout);
  if (!isWritten) {  // said while there are still translations
    std::cerr << "zym: " << zym::host::label("can't write to standard output") << '\n';
  }
  zym::tearDownProcess();
  return isWritten ? exitCode : badOutput;
}
