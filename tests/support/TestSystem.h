// What the tests need of the operating system beyond the platform layer: changing
// the environment, and a look at the processes that this one started.
#pragma once

#include <string>

namespace testing_support {

// Sets or removes a variable of this process's environment (seen by the library's
// GetEnv and inherited by the processes it starts).
void SetEnv(const char* name, const std::string& value);
void UnsetEnv(const char* name);

// True when no process started by this one is left, running or (on POSIX) waiting
// to be reaped. On Windows, where a started process stays this one's child, children
// get a few seconds to end.
bool NoChildren();

// The file name (no folder) of the program that a running process executes.
std::string ExecutableNameOf(int pid);

// How many running processes were started with a command line that holds both
// pieces of text.
int RunningProcessesWith(const std::string& text, const std::string& more);

// This process's resident memory in KiB, and the number of files, sockets and other
// system objects it holds open (descriptors on POSIX, handles on Windows).
long ResidentKiB();
long OpenSystemObjects();

// True when the tests run under Wine rather than on the system they were built for.
bool RunningUnderWine();

}  // namespace testing_support
