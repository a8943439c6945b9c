#pragma once

#include <sys/types.h>

#include <QStringList>
#include <functional>

// Child processes that end by SIGKILL, at a time or at a place.

namespace tessaly::kill {

/// Runs `work` in a process of its own; it ends when `work` returns.
pid_t startWork(const std::function<void()>& work);

/// Starts a program without input and with its output thrown away.
pid_t startProgram(const QStringList& command);

/// Waits for a process; its exit code, or -1 when a signal ended it.
int waitFor(pid_t process);

/// Returns once `hasBegun` says so; false when the process ended before.
bool waitUntil(pid_t process, const std::function<bool()>& hasBegun);

/// Kills a process after some microseconds. False when it had ended by itself.
bool killAfter(pid_t process, qint64 microseconds);

/// Runs a program until it is about to make its n-th change to a file system (from 0: a file made,
/// emptied, written, renamed, removed, flushed), and kills it there. False when it ended before.
bool killAtChange(const QStringList& command, int n);

/// As above for `work`.
bool killAtChange(const std::function<void()>& work, int n);

}  // namespace tessaly::kill
