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

} // namespace

Progress::Progress(std::string label)
    : label_(std::move(label)), terminal_(isTerminal()),
      next_(Clock::now() + std::chrono::milliseconds(300)) {}

Progress::~Progress() {
    if (shown_)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(label_.size()) + 6, "");
}

void Progress::update(std::size_t done, std::size_t total) {
    if (!terminal_ || total == 0 || Clock::now() < next_)
        return;
    const double percent = 100.0 * static_cast<double>(done) / static_cast<double>(total);
    std::fprintf(stderr, "\r%s %3.0f %%", label_.c_str(), percent);
    shown_ = true;
    next_ = Clock::now() + std::chrono::milliseconds(100);
}

} // namespace typeset
