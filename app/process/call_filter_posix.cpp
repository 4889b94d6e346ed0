// seccomp (seccomp(2)): a program of the kernel's small machine that looks at each system call.
#include <asm/unistd.h>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "app/process/confinement.h"

namespace dxf2d {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_X86_64;
// From here on, calls of another form that is not looked at.
constexpr std::uint32_t kFirstOtherForm = 0x40000000;
#elif defined(__aarch64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_AARCH64;
constexpr std::uint32_t kFirstOtherForm = 0x80000000;
#else
constexpr std::uint32_t kMachine = 0;
constexpr std::uint32_t kFirstOtherForm = 0x80000000;
#endif

// Never allowed.
constexpr std::uint32_t kForbidden[] = {
    // Sockets, and calls that go around the filter.
    SYS_socket, SYS_socketpair, SYS_io_uring_setup, SYS_io_uring_enter, SYS_io_uring_register,
    // Memory that no limit counts.
    SYS_memfd_create, SYS_memfd_secret,
    // Names of files, and what Landlock leaves: owners, modes, times, attributes.
    SYS_renameat2, SYS_unlinkat, SYS_linkat, SYS_symlinkat, SYS_mkdirat, SYS_mknodat, SYS_truncate,
    SYS_fchmod, SYS_fchmodat, SYS_fchown, SYS_fchownat, SYS_utimensat, SYS_setxattr, SYS_lsetxattr,
    SYS_fsetxattr, SYS_removexattr, SYS_lremovexattr, SYS_fremovexattr, SYS_open_by_handle_at,
    // Other processes.
    SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev, SYS_process_madvise, SYS_pidfd_open,
    SYS_pidfd_getfd, SYS_pidfd_send_signal, SYS_kcmp, SYS_tkill, SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo, SYS_setrlimit, SYS_setpgid, SYS_setpriority, SYS_sched_setscheduler,
    SYS_sched_setattr, SYS_sched_setparam, SYS_sched_setaffinity, SYS_ioprio_set, SYS_migrate_pages,
    SYS_move_pages, SYS_shmget, SYS_shmat, SYS_msgget, SYS_semget, SYS_mq_open, SYS_mq_unlink,
    // The kernel and its administration.
    SYS_bpf, SYS_perf_event_open, SYS_userfaultfd, SYS_keyctl, SYS_add_key, SYS_request_key,
    SYS_mount, SYS_umount2, SYS_unshare, SYS_setns, SYS_chroot, SYS_pivot_root, SYS_fsopen,
    SYS_fsmount, SYS_fsconfig, SYS_fspick, SYS_open_tree, SYS_move_mount, SYS_mount_setattr,
    SYS_swapon, SYS_swapoff, SYS_reboot, SYS_kexec_load, SYS_init_module, SYS_finit_module,
    SYS_delete_module, SYS_settimeofday, SYS_clock_settime, SYS_clock_adjtime, SYS_adjtimex,
    SYS_sethostname, SYS_setdomainname, SYS_acct, SYS_quotactl, SYS_quotactl_fd, SYS_syslog,
    SYS_vhangup, SYS_fanotify_init, SYS_personality, SYS_setuid, SYS_setgid, SYS_setreuid,
    SYS_setregid, SYS_setresuid, SYS_setresgid, SYS_setgroups, SYS_setfsuid, SYS_setfsgid,
    SYS_capset,
#ifdef __x86_64__
    // Older forms of calls above.
    SYS_rename, SYS_renameat, SYS_unlink, SYS_link, SYS_symlink, SYS_mkdir, SYS_rmdir, SYS_mknod,
    SYS_chmod, SYS_chown, SYS_lchown, SYS_utime, SYS_utimes, SYS_futimesat, SYS_ioperm, SYS_iopl,
    SYS_modify_ldt, SYS_kexec_file_load
#else
    SYS_renameat
#endif
};

// Never allowed unless programs are.
constexpr std::uint32_t kPrograms[] = {SYS_execve, SYS_execveat,
#ifdef __x86_64__
                                       SYS_fork, SYS_vfork
#endif
};

// What may be asked of devices and files. Others change files' flags or type into the terminal.
constexpr std::uint32_t kRequests[] = {TCGETS, FIONREAD, FIOCLEX, FIONCLEX};

// Requests of fcntl(2) by which the system signals other processes.
constexpr std::uint32_t kSignalRequests[] = {F_SETOWN, F_SETOWN_EX, F_SETSIG};

// Nobody waits for a process that stops itself.
constexpr std::uint32_t kStopSignals[] = {SIGSTOP, SIGTSTP, SIGTTIN, SIGTTOU};

constexpr std::uint32_t kRefuse = SECCOMP_RET_ERRNO | EPERM;
// The C library then takes an older call, whose arguments can be looked at.
constexpr std::uint32_t kUnknown = SECCOMP_RET_ERRNO | ENOSYS;

// Of the low half; both machines are little-endian.
constexpr std::size_t offsetOfArgument(std::size_t number) {
  return offsetof(seccomp_data, args) + sizeof(std::uint64_t) * number;
}

// Writes the program. Its accumulator holds the number of the call between its parts.
class FilterProgram {
 public:
  FilterProgram() {
    Load(offsetof(seccomp_data, arch));
    JumpUnlessEqual(kMachine, kRefuse);
    LoadCall();
    Add(BPF_JMP | BPF_JGE | BPF_K, kFirstOtherForm, 0, 1);
    Return(kRefuse);
  }

  // Refuses each of these calls. The system goes through the filter once for every call that there
  // is, to know those that it need not look at; so they are sorted, in parts of which one is gone
  // through at most.
  void RefuseEach(std::vector<std::uint32_t> calls) {
    constexpr std::size_t kPart = 12;
    std::ranges::sort(calls);
    std::vector<std::size_t> ends;
    for (std::size_t begin = 0; begin < calls.size(); begin += kPart) {
      const std::span part(calls.data() + begin, std::min(kPart, calls.size() - begin));
      const auto count = static_cast<unsigned>(part.size());
      // Greater ones are in later parts.
      Add(BPF_JMP | BPF_JGT | BPF_K, part.back(), count + 2, 0);
      for (unsigned i = 0; i < count; ++i) {
        Add(BPF_JMP | BPF_JEQ | BPF_K, part[i], count - i, 0);
      }
      ends.push_back(code_.size());
      Add(BPF_JMP | BPF_JA, 0);
      Return(kRefuse);
    }
    for (const std::size_t end : ends) {
      code_[end].k = static_cast<std::uint32_t>(code_.size() - end - 1);
    }
  }

  // Ends the call with `outcome`.
  void Refuse(std::uint32_t call, std::uint32_t outcome = kRefuse) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1);
    Return(outcome);
  }
  // Refuses the call unless its argument is `value`.
  void RequireArgument(std::uint32_t call, std::size_t number, std::uint32_t value) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 4);
    Load(offsetOfArgument(number));
    JumpUnlessEqual(value, kRefuse);
    LoadCall();
  }
  void RefuseArgument(std::uint32_t call, std::size_t number, std::uint32_t value) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 4);
    Load(offsetOfArgument(number));
    Refuse(value);
    LoadCall();
  }
  // Refuses the call unless its argument is one of at most 250 values.
  void RequireArgumentAmong(std::uint32_t call, std::size_t number,
                            std::span<const std::uint32_t> values) {
    const auto count = static_cast<std::uint8_t>(values.size());
    Add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, count + 3U);
    Load(offsetOfArgument(number));
    for (std::uint8_t i = 0; i < count; ++i) {
      Add(BPF_JMP | BPF_JEQ | BPF_K, values[i], count - i, 0);
    }
    Return(kRefuse);
    LoadCall();
  }
  // Refuses the call unless its argument, a pointer, is null.
  void RequireNull(std::uint32_t call, std::size_t number) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 7);
    Load(offsetOfArgument(number));
    JumpUnlessEqual(0, kRefuse);
    Load(offsetOfArgument(number) + sizeof(std::uint32_t));
    JumpUnlessEqual(0, kRefuse);
    LoadCall();
  }
  void RequireFlag(std::uint32_t call, std::size_t number, std::uint32_t flag) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 4);
    Load(offsetOfArgument(number));
    Add(BPF_JMP | BPF_JSET | BPF_K, flag, 1, 0);
    Return(kRefuse);
    LoadCall();
  }
  bool Install() {
    Return(SECCOMP_RET_ALLOW);
    const sock_fprog program{static_cast<unsigned short>(code_.size()), code_.data()};
    return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
  }

 private:
  // How many instructions to go over if the comparison holds, and if it does not.
  void Add(int operation, std::uint32_t value, unsigned ifTrue = 0, unsigned ifFalse = 0) {
    code_.push_back({static_cast<std::uint16_t>(operation), static_cast<std::uint8_t>(ifTrue),
                     static_cast<std::uint8_t>(ifFalse), value});
  }
  void Load(std::size_t offset) {
    Add(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
  }
  void LoadCall() { Load(offsetof(seccomp_data, nr)); }
  void Return(std::uint32_t outcome) { Add(BPF_RET | BPF_K, outcome); }
  void JumpUnlessEqual(std::uint32_t value, std::uint32_t outcome) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, value, 1, 0);
    Return(outcome);
  }

  std::vector<sock_filter> code_;
};

}  // namespace

bool hasCallFilter() { return kMachine != 0 && prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0; }

bool filterCalls(bool allowsPrograms) {
  if (!hasCallFilter()) {
    return false;
  }
  FilterProgram filter;
  std::vector<std::uint32_t> forbidden(std::begin(kForbidden), std::end(kForbidden));
  if (!allowsPrograms) {
    forbidden.insert(forbidden.end(), std::begin(kPrograms), std::end(kPrograms));
  }
  filter.RefuseEach(std::move(forbidden));
  // A signal to the process itself is how it aborts.
  const auto own = static_cast<std::uint32_t>(getpid());
  filter.RequireArgument(SYS_kill, 0, own);
  filter.RequireArgument(SYS_tgkill, 0, own);
  for (const std::uint32_t signal : kStopSignals) {
    filter.RefuseArgument(SYS_kill, 1, signal);
    filter.RefuseArgument(SYS_tgkill, 2, signal);
  }
  for (const std::uint32_t request : kSignalRequests) {
    filter.RefuseArgument(SYS_fcntl, 1, request);
  }
  filter.RequireArgumentAmong(SYS_ioctl, 1, kRequests);
  // The limits of this process may be asked for. They stay as they are, and so do those of others.
  filter.RequireArgument(SYS_prlimit64, 0, 0);
  filter.RequireNull(SYS_prlimit64, 2);
  if (!allowsPrograms) {
    // Threads do not count as processes.
    filter.RequireFlag(SYS_clone, 0, CLONE_THREAD);
    filter.Refuse(SYS_clone3, kUnknown);
  }
  return filter.Install();
}

}  // namespace dxf2d
