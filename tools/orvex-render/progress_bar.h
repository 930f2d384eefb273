#pragma once

#include <chrono>
#include <cstdio>
#include <string>

/// A bar with what is done of a row of equal steps and what is left, as
/// "[######..........]  12/36  0:41 left".
/// @param columns  width of the terminal; the bar takes what the numbers leave
std::string progress_line(int done, int total, double seconds, int columns);

/// A time as "0:41", "12:05" or "3:12:05".
std::string clock_of(double seconds);
/// The width of a terminal; 80 for what is none.
int columns_of(std::FILE* stream);

/// Draws the bar on a terminal, and nothing elsewhere. The end of its scope ends the line.
class ProgressBar {
public:
    /// @param stream  where it is drawn
    /// @param wanted  false draws nothing there either
    ProgressBar(std::FILE* stream, int total, bool wanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Shows how many steps are done.
    void show(int done) const;

private:
    std::FILE* stream;
    int total;
    bool shown;
    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};
