#pragma once

#include <cstddef>
#include <string>

namespace typeset {

/// A line on standard error that says how far a longer work has come. It shows up only on a
/// terminal and only for work of many steps, and leaves nothing behind.
class Progress {
public:
    explicit Progress(std::string label);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void update(std::size_t done, std::size_t total);

private:
    std::string label_;
    bool terminal_;
    bool shown_ = false;
    std::size_t percent_ = 0;
};

} // namespace typeset
