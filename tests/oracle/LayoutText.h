#pragma once

#include "GposOracle.h"
#include "GsubOracle.h"
#include "LayoutModel.h"

#include <set>
#include <string>

namespace KWTest::oracle {

// What a failing case is printed with: short, and whole where it is small.

std::string text(const SubTable& subtable);
/// The lookup with those that its contexts call, each once.
std::string text(const Layout& layout, int lookup, std::set<int>& seen);
std::string text(const Run& run);
std::string text(const std::vector<int>& numbers);
std::string text(const Line& line);

} // namespace KWTest::oracle
