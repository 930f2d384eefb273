#include "frame_clock.h"

void FrameClock::count(double seconds, double now) {
    constexpr double span = 0.5;
    if (!has_begun) {
        has_begun = true;
        begin = now;
        shown_milliseconds = seconds * 1000.0;
        return;
    }
    spent += seconds;
    ++frames;
    if (now - begin < span)
        return;
    shown_milliseconds = spent / frames * 1000.0;
    shown_per_second = frames / (now - begin);
    begin = now;
    spent = 0.0;
    frames = 0;
}
