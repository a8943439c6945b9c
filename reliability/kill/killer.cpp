// SPDX-License-Identifier: GPL-3.0-or-later
#include "killer.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QMap>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <vector>

#include "platform/paths.h"

namespace tessaly::kill {

namespace {

pid_t start(const Work& work) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        qFatal("fork");
    if (child > 0)
        return child;
    work();
    ::_exit(0);
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

// Does `work` until it is about to make its n-th change, from 0, lets it go on for some
// microseconds, and kills it. False when it had ended before.
bool killAtChange(const Work& work, int n, int microseconds = 0) {
    constexpr int AtSystemCall = SIGTRAP | 0x80;
    const pid_t child = start([&] {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        work();
    });
    int status = 0;
    ::waitpid(child, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    for (int signal = 0;;) {
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0)
            qFatal("ptrace");
        ::waitpid(child, &status, 0);
        if (!WIFSTOPPED(status))
            return false;
        const int stopped = WSTOPSIG(status);
        signal = stopped == SIGTRAP || stopped == AtSystemCall ? 0 : stopped;
        __ptrace_syscall_info info{};
        if (stopped == AtSystemCall)
            ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
        if (info.op == PTRACE_SYSCALL_INFO_ENTRY && isChange(info) && n-- == 0)
            break;
    }
    if (microseconds > 0) {
        ::ptrace(PTRACE_DETACH, child, nullptr, nullptr);
        ::usleep(useconds_t(microseconds));
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

}  // namespace

Work program(const QStringList& command) {
    return [command] {
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
    };
}

int run(const Work& work) {
    int status = 0;
    ::waitpid(start(work), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int killEverywhere(const Victim& victim, int runs, std::mt19937& random) {
    int failures = 0;
    QMap<QString, int> states;
    const auto judge = [&](const QString& problem, const QString& when) {
        if (problem.isEmpty())
            return;
        ++failures;
        std::printf("FAILED, %s, killed %s: %s\n", qUtf8Printable(victim.name),
                    qUtf8Printable(when), qUtf8Printable(problem));
    };
    const auto killOnce = [&](int change, int microseconds, const QString& when) {
        const bool wasKilled = killAtChange(victim.work, change, microseconds);
        const Finding found = victim.look(wasKilled);
        ++states[found.state];
        judge(found.problem, when);
        return wasKilled;
    };
    int changes = 0;
    for (bool wasKilled = true; wasKilled; ++changes) {
        const QString when = QString("before change %1").arg(changes);
        victim.begin();
        wasKilled = killOnce(changes, 0, when);
        judge(victim.finish(), when);
    }
    const auto dice = [&](int most) { return std::uniform_int_distribution(0, most)(random); };
    for (int done = 0; done < runs;) {
        victim.begin();
        QString when;
        // What mends a half-written card may be killed as well.
        for (int inARow = dice(2); inARow >= 0 && done < runs; --inARow, ++done) {
            const int change = dice(changes - 2), microseconds = 1 + dice(1 << dice(11));
            when = QString("in run %1, %2 us behind change %3")
                       .arg(QString::number(done), QString::number(microseconds),
                            QString::number(change));
            killOnce(change, microseconds, when);
        }
        judge(victim.finish(), when);
    }
    std::printf("%s: killed before each of %d changes and %d times behind one:",
                qUtf8Printable(victim.name), changes - 1, runs);
    for (auto state = states.begin(); state != states.end(); ++state)
        std::printf(" %s %d", qUtf8Printable(state.key()), state.value());
    std::printf("\n");
    return failures;
}

}  // namespace tessaly::kill
