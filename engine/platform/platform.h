#ifndef QV_PLATFORM_H
#define QV_PLATFORM_H

#include <cstdint>
#include <string>

// The few operating-system services the engine core needs, kept in one place.
namespace qv {
namespace platform {

// Microseconds from a fixed, unspecified start; never runs backwards, not even
// when the wall clock is set or the month changes.
std::int64_t monotonicMicroseconds();

// Sleeps at least ms milliseconds (nothing for ms <= 0); resumes after
// interrupting signals.
void sleepMilliseconds(long ms);

// The current working directory, or "" when it does not fit in max_length
// bytes or cannot be read.
std::string currentDirectory(std::size_t max_length = 256);

// Stop signals (SIGINT, SIGTERM): once installed they only record a request,
// which the frame loop reads; the request stays until cleared, so it cannot
// be lost between two runs of the loop.
int installStopSignals();
void restoreStopSignals();
bool stopRequested();
void clearStopRequest();
// The same request made from inside the program (the window's close button),
// so that closing the window during any run of the loop ends the program.
void requestStop();

}  // namespace platform
}  // namespace qv

#endif
