#include "killed_process.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "platform/paths.h"

namespace tessaly::kill {

namespace {

[[noreturn]] void give_up(const char* what) {
    std::perror(what);
    std::exit(2);
}

pid_t start(const std::function<void()>& work) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        give_up("fork");
    if (child > 0)
        return child;
    work();
    ::_exit(0);
}

[[noreturn]] void become(const QStringList& command) {
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (int stream = 0; stream <= 2; ++stream)
        ::dup2(nowhere, stream);
    std::vector<QByteArray> words;
    for (const QString& word : command)
        words.push_back(toNativePath(word));
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(arguments[0], arguments.data());
    ::_exit(127);
}

bool isChange(const __ptrace_syscall_info& info) {
    static const long Changes[] = {
#ifdef SYS_open  // older architectures have these beside their "at" forms
        SYS_unlink,          SYS_rename,    SYS_rmdir,   SYS_mkdir,  SYS_link,
#endif
        SYS_unlinkat,        SYS_renameat2, SYS_mkdirat, SYS_linkat, SYS_ftruncate,
        SYS_fsync,           SYS_fdatasync, SYS_syncfs,  SYS_fchmod, SYS_utimensat,
        SYS_sync_file_range, SYS_flock,
    };
    const auto number = long(info.entry.nr);
    if (number == SYS_write)
        return info.entry.args[0] > 2;
    if (number == SYS_openat)
        return (info.entry.args[2] & (O_CREAT | O_TRUNC)) != 0;
    return std::find(std::begin(Changes), std::end(Changes), number) != std::end(Changes);
}

// Follows a child that has stopped itself from system call to system call.
bool followAndKill(pid_t child, int n) {
    int status = 0;
    ::waitpid(child, &status, 0);
    if (::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) != 0)
        give_up("ptrace");
    int signal = 0;
    while (::ptrace(PTRACE_SYSCALL, child, nullptr, signal) == 0) {
        ::waitpid(child, &status, 0);
        if (WIFEXITED(status) || WIFSIGNALED(status))
            return false;
        const int stopped = WSTOPSIG(status);
        signal = stopped == SIGTRAP || stopped == (SIGTRAP | 0x80) ? 0 : stopped;
        if (stopped != (SIGTRAP | 0x80))
            continue;
        __ptrace_syscall_info info{};
        ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
        if (info.op != PTRACE_SYSCALL_INFO_ENTRY || !isChange(info) || n-- > 0)
            continue;
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
        return true;
    }
    give_up("ptrace");
}

pid_t startFollowed(const std::function<void()>& work) {
    return start([&] {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        work();
    });
}

}  // namespace

pid_t startWork(const std::function<void()>& work) {
    return start(work);
}

pid_t startProgram(const QStringList& command) {
    return start([&] { become(command); });
}

int waitFor(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR)
        continue;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool waitUntil(pid_t process, const std::function<bool()>& hasBegun) {
    while (!hasBegun()) {
        siginfo_t ended{};
        ::waitid(P_PID, id_t(process), &ended, WEXITED | WNOHANG | WNOWAIT);
        if (ended.si_pid == process)
            return false;
        ::sched_yield();
    }
    return true;
}

bool killAfter(pid_t process, qint64 microseconds) {
    const timespec wait{.tv_sec = time_t(microseconds / 1000000),
                        .tv_nsec = long(microseconds % 1000000) * 1000};
    ::nanosleep(&wait, nullptr);
    ::kill(process, SIGKILL);
    return waitFor(process) == -1;
}

bool killAtChange(const QStringList& command, int n) {
    return followAndKill(startFollowed([&] { become(command); }), n);
}

bool killAtChange(const std::function<void()>& work, int n) {
    return followAndKill(startFollowed(work), n);
}

}  // namespace tessaly::kill
