// What the fault tests share: how long a call took, and a reply limit for one test.
#pragma once

#include <chrono>

#include "KPCBAPI.hpp"

using Clock = std::chrono::steady_clock;

inline long long MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Restores the default (no limit) whatever the test does.
struct ReplyTimeout {
    explicit ReplyTimeout(int ms) { KPCB_SetReplyTimeout(ms); }
    ~ReplyTimeout() { KPCB_SetReplyTimeout(0); }
};
