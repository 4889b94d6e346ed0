#include "app/process/worker_template.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "app/process/descriptor.h"
#include "app/process/worker_protocol.h"
#include "app/process/worker_start.h"

namespace dxf2d {

namespace {

// Sends one message. Returns false when nobody is there to take it.
bool sendRequest(int socket, const std::string& request, std::span<const int> descriptors) {
  iovec part{const_cast<char*>(request.data()), request.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMostRequestDescriptors * sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
  cmsghdr* const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
  std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
  return sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT) ==
         static_cast<ssize_t>(request.size());
}

// Whether `socket` became readable, or was closed on the other side, before `signals` did.
bool waitForAnswer(int socket, int signals) {
  pollfd events[] = {{socket, POLLIN, 0}, {signals, POLLIN, 0}};
  while (poll(events, 2, -1) < 0 && errno == EINTR) {
  }
  return events[0].revents != 0;
}

}  // namespace

// The process, which is ended with this object.
class WorkerTemplate::Child {
 public:
  // Not there when it cannot be started.
  Child(const std::string& program, const std::vector<std::string>& libraries) {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
      return;
    }
    socket_ = Descriptor(ends[0]);
    const Descriptor other(ends[1]);
    pid_t process = 0;
    if (startWorker({kForkTask, libraries, {}, false, program}, {}, other.Number(), process) == 0) {
      process_ = process;
    }
  }
  ~Child() { End(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t Process() const { return process_; }

  bool Ask(const std::string& request, std::span<const int> descriptors) const {
    return process_ != 0 && sendRequest(socket_.Number(), request, descriptors);
  }

  // The answer to what was asked; nothing when the process ends instead, which it is made to once
  // `signals` is readable. A worker begins only after the answer is sent (see serveForks), so that
  // without one there is none.
  std::optional<ForkAnswer> TakeAnswer(int signals) {
    if (!waitForAnswer(socket_.Number(), signals)) {
      End();
    }
    ForkAnswer answer = 0;
    ssize_t size = 0;
    while ((size = recv(socket_.Number(), &answer, sizeof answer, 0)) < 0 && errno == EINTR) {
    }
    return size == sizeof answer ? std::optional(answer) : std::nullopt;
  }

 private:
  // There is nothing in it that could be lost.
  void End() {
    if (process_ == 0) {
      return;
    }
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
    process_ = 0;
  }

  Descriptor socket_;
  // 0: there is none.
  pid_t process_ = 0;
};

WorkerTemplate::WorkerTemplate(std::string program, std::vector<std::string> libraries)
    : program_(std::move(program)), libraries_(std::move(libraries)) {}

WorkerTemplate::~WorkerTemplate() = default;

std::optional<long> WorkerTemplate::Fork(const WorkerCall& call, const WorkerLimits& limits,
                                         int report, int signals) {
  const std::string request = requestOf(workerWords(call, limits, report));
  std::vector<int> descriptors{report};
  descriptors.insert(descriptors.end(), call.descriptors.begin(), call.descriptors.end());
  if (isRefused_ || call.hasOutput || call.program != program_ ||
      request.size() > kMostRequestBytes || descriptors.size() > kMostRequestDescriptors) {
    return std::nullopt;
  }
  // It may have been ended since the last call.
  if (!child_ || !child_->Ask(request, descriptors)) {
    child_ = std::make_unique<Child>(program_, libraries_);
    if (!child_->Ask(request, descriptors)) {
      return std::nullopt;
    }
  }
  const std::optional<ForkAnswer> answer = child_->TakeAnswer(signals);
  if (!answer || *answer <= 0) {
    // For lack of something now, or for good.
    isRefused_ = answer && *answer != -EAGAIN && *answer != -ENOMEM && *answer != -EMFILE;
    return std::nullopt;
  }
  return static_cast<long>(*answer);
}

long WorkerTemplate::Process() const { return child_ ? child_->Process() : 0; }

}  // namespace dxf2d
