#include "Progress.h"

#include <cstdio>
#include <utility>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace typeset {

namespace {

bool isTerminal() {
#if defined(_WIN32)
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

/// Fewer steps than this are done before anybody has read the line.
constexpr std::size_t kLongWork = 1000;

} // namespace

Progress::Progress(std::string label) : label_(std::move(label)), terminal_(isTerminal()) {}

Progress::~Progress() {
    if (shown_)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(label_.size()) + 6, "");
}

void Progress::update(std::size_t done, std::size_t total) {
    if (!terminal_ || total < kLongWork)
        return;
    const std::size_t percent = done * 100 / total;
    if (shown_ && percent == percent_)
        return;
    std::fprintf(stderr, "\r%s %3zu %%", label_.c_str(), percent);
    shown_ = true;
    percent_ = percent;
}

} // namespace typeset
