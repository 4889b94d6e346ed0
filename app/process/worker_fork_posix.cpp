#include "app/process/worker_fork.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "app/process/pipe.h"
#include "app/process/worker_protocol.h"

namespace dxf2d {

namespace {

// Which descriptors of this process a worker is to have under which numbers.
struct PlacedDescriptor {
  Descriptor own;
  int number = -1;
};

struct ForkRequest {
  std::vector<std::string> words;
  std::vector<PlacedDescriptor> descriptors;
};

std::vector<Descriptor> descriptorsOf(msghdr& message) {
  std::vector<Descriptor> descriptors;
  const cmsghdr* const header = CMSG_FIRSTHDR(&message);
  if (header == nullptr || header->cmsg_type != SCM_RIGHTS) {
    return descriptors;
  }
  for (std::size_t at = 0; at + CMSG_LEN(0) < header->cmsg_len; at += sizeof(int)) {
    int number = -1;
    std::memcpy(&number, CMSG_DATA(header) + at, sizeof number);
    descriptors.emplace_back(number);
  }
  return descriptors;
}

// Moves what came out of the way of the numbers that it is to have. Returns false when there are
// not as many numbers, or no descriptors are left.
bool place(std::vector<Descriptor> came, ForkRequest& request) {
  const auto setup = request.words.size() > 1 + kSetupWords
                         ? setupOf(std::span(request.words).subspan(1, kSetupWords))
                         : std::nullopt;
  if (!setup || came.size() != 1 + setup->descriptors.size()) {
    errno = EINVAL;
    return false;
  }
  std::vector<int> numbers{setup->report};
  numbers.insert(numbers.end(), setup->descriptors.begin(), setup->descriptors.end());
  const int above = *std::ranges::max_element(numbers) + 1;
  for (std::size_t i = 0; i < came.size(); ++i) {
    const int moved = fcntl(came[i].Number(), F_DUPFD_CLOEXEC, above);
    if (moved < 0) {
      return false;
    }
    request.descriptors.push_back({Descriptor(moved), numbers[i]});
  }
  return true;
}

// The next request. Returns 0 or, for one that cannot be met, an errno. Ends the process when there
// are no more.
int receive(int socket, ForkRequest& request) {
  static std::array<char, kMostRequestBytes> bytes;
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMostRequestDescriptors * sizeof(int))> control{};
  iovec part{bytes.data(), bytes.size()};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  ssize_t size = 0;
  while ((size = recvmsg(socket, &message, MSG_CMSG_CLOEXEC)) < 0 && errno == EINTR) {
  }
  if (size <= 0) {
    std::_Exit(0);
  }
  request.words = wordsOfRequest({bytes.data(), static_cast<std::size_t>(size)});
  return place(descriptorsOf(message), request) ? 0 : errno;
}

// Forks a child of this process's parent, which fork() cannot. There is one thread, which holds no
// lock; beside locks, what fork() sees to are the thread's number and its list of robust mutexes,
// both of which are the kernel's matter too. Returns -1 with errno when there is none.
pid_t forkSibling() {
  int* threadNumber = nullptr;
  void* mutexes = nullptr;
  std::size_t size = 0;
  if (prctl(PR_GET_TID_ADDRESS, &threadNumber) != 0 ||
      syscall(SYS_get_robust_list, 0, &mutexes, &size) != 0) {
    return -1;
  }
  clone_args arguments{};
  arguments.flags = CLONE_PARENT | CLONE_CHILD_SETTID | CLONE_CHILD_CLEARTID;
  arguments.child_tid = reinterpret_cast<std::uintptr_t>(threadNumber);
  const auto child = static_cast<pid_t>(syscall(SYS_clone3, &arguments, sizeof arguments));
  if (child == 0) {
    syscall(SYS_set_robust_list, mutexes, size);
  }
  return child;
}

// A worker's first step: to wait until its parent knows of it.
void waitForStart(Pipe& start) {
  start.writer.Close();
  char byte = 0;
  ssize_t size = 0;
  while ((size = read(start.reader.Number(), &byte, 1)) < 0 && errno == EINTR) {
  }
  if (size != 1) {
    // As the template was.
    raise(SIGKILL);
  }
}

// Returns whether this is the worker.
bool answer(int socket, int error) {
  Pipe start = openPipe();
  ForkAnswer answer = -error;
  if (error == 0) {
    answer = start.writer.IsOpen() ? forkSibling() : -1;
    answer = answer < 0 ? -errno : answer;
  }
  if (answer == 0) {
    waitForStart(start);
    return true;
  }
  if (send(socket, &answer, sizeof answer, MSG_NOSIGNAL) < 0 ||
      (answer > 0 && write(start.writer.Number(), "", 1) < 0)) {
    // The parent has gone, or the worker: it finds the pipe closed, or is not there to look.
  }
  return false;
}

}  // namespace

std::vector<std::string> serveForks(int socket, std::span<const std::string> libraries) {
  for (const std::string& library : libraries) {
    // What cannot be loaded fails where it is used.
    dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  while (true) {
    ForkRequest request;
    const int error = receive(socket, request);
    if (!answer(socket, error)) {
      continue;
    }
    for (const PlacedDescriptor& descriptor : request.descriptors) {
      dup2(descriptor.own.Number(), descriptor.number);
    }
    return std::move(request.words);
  }
}

}  // namespace dxf2d
