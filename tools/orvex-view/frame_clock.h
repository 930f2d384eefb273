#pragma once

/// How long frames take and how many there are, as means of half a second: numbers that can be
/// read.
class FrameClock {
public:
    /// Counts a frame.
    /// @param seconds  that it took
    /// @param now      when it ended, in seconds from anywhere
    void count(double seconds, double now);
    /// Begins again.
    void reset() { *this = FrameClock(); }

    double milliseconds() const { return shown_milliseconds; } ///< a frame; 0 before the first
    double per_second() const { return shown_per_second; }     ///< 0 within the first half second

private:
    double begin = 0.0;
    double spent = 0.0;
    int frames = 0; ///< since `begin`, the one that ended then left out
    bool has_begun = false;
    double shown_milliseconds = 0.0;
    double shown_per_second = 0.0;
};
