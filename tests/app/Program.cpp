#include "tests/app/Program.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace zym::test {
namespace {

void limit(int resource, rlim_t most) {
  const rlimit limits{most, RLIM_INFINITY};
  setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

[[noreturn]] void become(const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder, const std::string& locale) {
  dup2(open((folder / "in").c_str(), O_RDONLY), STDIN_FILENO);
  dup2(open((folder / "out").c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
  dup2(open((folder / "err").c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
  limit(RLIMIT_CPU, 60);
#ifndef __SANITIZE_ADDRESS__
  limit(RLIMIT_AS, 2UL << 30U);
#endif
  setenv("LC_ALL", locale.c_str(), 1);
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  std::vector<char*> argv;
  std::string name = ZYM_PROGRAM;
  argv.push_back(name.data());
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  execv(name.c_str(), argv.data());
  _exit(127);
}

}  // namespace

Outcome run(const std::vector<std::string>& arguments, std::string_view input,
            const std::string& locale) {
  const TemporaryFolder folder;
  (void)folder.file("in", input);
  const pid_t child = fork();
  if (child == 0) become(arguments, folder.path(), locale);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) throw std::runtime_error("no child");
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), bytesOf(folder / "out"),
          bytesOf(folder / "err")};
}

std::string example(const std::string& name) {
  return std::string(ZYM_EXAMPLES) + "/" + name + ".wm2";
}

}  // namespace zym::test
