// A worker program whose tasks end in every way that a worker can end.
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/cli/failure.h"
#include "app/process/confinement.h"
#include "app/process/refused_memory.h"
#include "app/process/worker_program.h"

namespace dxf2d {

namespace {

using Words = std::span<const std::string>;

int numberOf(Words words) { return std::stoi(words[0]); }

[[noreturn]] void waitForever() {
  while (true) {
    pause();
  }
}

// Is stopped for `words[0]` milliseconds; a process of its own then lets it go on.
int beStopped(Words words) {
  const pid_t self = getpid();
  const pid_t helper = fork();
  if (helper == 0) {
    poll(nullptr, 0, std::stoi(words[0]));
    kill(self, SIGCONT);
    std::_Exit(0);
  }
  raise(SIGSTOP);
  waitpid(helper, nullptr, 0);
  return kExitDone;
}

// Uses at least `bytes` of the stack. Returns what was written at its end.
int useStack(std::size_t bytes) {
  volatile char block[4096];
  block[0] = 1;
  if (bytes <= sizeof block) {
    return block[0];
  }
  return useStack(bytes - sizeof block) + block[0] - 1;
}

int spin(Words) {
  volatile bool goesOn = true;
  while (goesOn) {
    continue;
  }
  return 0;
}

int throwOtherwise(Words) { throw std::runtime_error("otherwise"); }
int refuseMemory(Words) { throw std::bad_alloc(); }

// NOLINTNEXTLINE(bugprone-exception-escape): this is how readers end.
int refuseWhereNothingMayBeThrown(Words words) noexcept { return refuseMemory(words); }
// NOLINTNEXTLINE(bugprone-exception-escape): this is how readers end.
int failWhereNothingMayBeThrown(Words words) noexcept { return throwOtherwise(words); }

// Memory that is in use and that no limit on address space refuses.
int touchMemory(Words words) {
  const std::vector<char> much(static_cast<std::size_t>(numberOf(words)) << 20, 'x');
  tellParent(much.back() == 'x' ? "touched" : "");
  waitForever();
}

int reserveMemory(Words) {
  try {
    std::vector<char> much(std::size_t{1} << 30);
    return much.data() == nullptr ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return 5;
  }
}

// As libraries in C do that take a null pointer for a fault of the file.
int misreadRefusal(Words) {
  const std::size_t bytes = std::size_t{1} << 30;
  void* volatile const memory = std::malloc(bytes);
  void* volatile const zeros = std::calloc(bytes, 1);
  if (memory == nullptr && zeros == nullptr) {
    throw Failure(kExitInput, {"house.obj", "malformed image", "repair it"});
  }
  return 0;
}

// Asks for what no machine has.
int misreadSize(Words) {
  volatile std::size_t bytes = SIZE_MAX - 4096;
  if (std::malloc(bytes) == nullptr) {
    throw Failure(kExitInput, {"house.obj", "malformed image", "repair it"});
  }
  return 0;
}

int tellDescriptors(Words) {
  std::string list;
  for (int number = 3; number < 1000; ++number) {
    if (fcntl(number, F_GETFD) >= 0 && (fcntl(number, F_GETFD) & FD_CLOEXEC) == 0) {
      list += std::to_string(number) + " ";
    }
  }
  tellParent(list);
  return 0;
}

// Which file the descriptor `words[0]` is.
int tellFile(Words words) {
  struct stat status {};
  if (fstat(numberOf(words), &status) != 0) {
    return 1;
  }
  tellParent(std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino));
  return 0;
}

// Begins a stage, in which the parent does what it likes and then writes into the pipe `words[0]`.
int waitForByte(Words words) {
  beginStage("waiting");
  char byte = 0;
  return read(numberOf(words), &byte, 1) == 1 ? byte : 1;
}

// Calls that are refused say so before they look at their arguments, which are wrong for all.
int tellRefusedCalls(Words words) {
  confine({{}, {}});
  for (const std::string& word : words) {
    errno = 0;
    const long end = syscall(std::stoi(word), -1, -1, -1, -1, -1, -1);
    tellParent(end == -1 && errno == EPERM ? "refused " : "allowed ");
  }
  return 0;
}

// Notes a refused allocation and then does what the words say.
int hideRefusal(Words words) {
  noteRefusedMemory();
  if (words[0] == "fail") {
    throw Failure(kExitInput, {"house.obj", "malformed XML", "repair it"});
  }
  // The address sanitizer's handler would exit instead.
  std::signal(SIGSEGV, SIG_DFL);
  return words[0] == "crash" ? raise(SIGSEGV) : 0;
}

void tellOutcome(const char* deed, bool isDone) {
  tellParent(std::string(deed) + (isDone ? ": done\n" : ": refused\n"));
}

bool canOpen(const std::string& path, int flags) {
  const int file = open(path.c_str(), flags | O_CLOEXEC, 0600);
  close(file);
  return file >= 0;
}

// Tries what a reader in the hands of an attacker would, with only `words[0]` readable and the
// descriptor `words[1]` writable; `words[2]` is another directory.
int confineAndTry(Words words) {
  const int output = std::stoi(words[1]);
  const std::string& other = words[2];
  confine({{words[0]}, {output}});
  tellOutcome("read the model", canOpen(words[0] + "/model.obj", O_RDONLY));
  tellOutcome("write the output", write(output, "x", 1) == 1);
  tellOutcome("open the output", canOpen("/proc/self/fd/" + words[1], O_WRONLY | O_TRUNC));
  tellOutcome("write the model", canOpen(words[0] + "/model.obj", O_WRONLY));
  tellOutcome("make a file", canOpen(words[0] + "/new", O_WRONLY | O_CREAT));
  tellOutcome("read another file", canOpen(other + "/secret", O_RDONLY));
  tellOutcome("list another directory", canOpen(other, O_RDONLY | O_DIRECTORY));
  tellOutcome("remove a file", unlink((words[0] + "/model.obj").c_str()) == 0);
  tellOutcome("change rights", chmod((words[0] + "/model.obj").c_str(), 0777) == 0);
  tellOutcome("open a socket", socket(AF_INET, SOCK_DGRAM, 0) >= 0);
  tellOutcome("open a local socket", socket(AF_UNIX, SOCK_STREAM, 0) >= 0);
  tellOutcome("start a program", execl("/bin/true", "true", nullptr) == 0);
  tellOutcome("start a process", fork() >= 0);
  tellOutcome("signal the parent", kill(getppid(), 0) == 0);
  return kExitDone;
}

const WorkerTask kTasks[] = {
    {"return", [](Words words) { return numberOf(words); }},
    {"exit", [](Words words) -> int { std::_Exit(numberOf(words)); }},
    {"raise", [](Words words) { return raise(numberOf(words)); }},
    {"signal the parent",
     [](Words words) -> int {
       kill(getppid(), numberOf(words));
       return 7;
     }},
    {"signal the parent and wait",
     [](Words words) -> int {
       kill(getppid(), numberOf(words));
       waitForever();
     }},
    {"be stopped", &beStopped},
    {"wait", [](Words) -> int { waitForever(); }},
    {"spin", &spin},
    {"use the stack", [](Words) { return useStack(std::size_t{64} << 20); }},
    {"recurse without end", [](Words) { return useStack(SIZE_MAX); }},
    {"reserve memory", &reserveMemory},
    {"misread a refusal", &misreadRefusal},
    {"misread a size", &misreadSize},
    {"touch memory", &touchMemory},
    {"hide a refusal", &hideRefusal},
    {"fail",
     [](Words words) -> int {
       throw Failure(static_cast<ExitCode>(numberOf(words)),
                     {"house.obj", "it is raining", "wait"});
     }},
    {"throw", &throwOtherwise},
    {"refuse memory", &refuseMemory},
    {"refuse memory where nothing may be thrown", &refuseWhereNothingMayBeThrown},
    {"fail where nothing may be thrown", &failWhereNothingMayBeThrown},
    {"tell",
     [](Words words) {
       for (const std::string& word : words) {
         tellParent(word);
       }
       return 0;
     }},
    {"tell without end",
     [](Words) -> int {
       while (true) {
         tellParent(std::string(1 << 16, 'x'));
       }
     }},
    {"tell descriptors", &tellDescriptors},
    {"tell file", &tellFile},
    {"tell parent",
     [](Words) {
       tellParent(std::to_string(getppid()));
       return 0;
     }},
    {"tell refused calls", &tellRefusedCalls},
    {"wait for a byte", &waitForByte},
    {"print",
     [](Words words) {
       std::fputs(words[0].c_str(), stdout);
       std::fputs(words[0].c_str(), stderr);
       return 0;
     }},
    {"confine", &confineAndTry},
};

}  // namespace

}  // namespace dxf2d

int main(int argc, char** argv) { dxf2d::runWorkerProgram(dxf2d::kTasks, argc, argv); }
