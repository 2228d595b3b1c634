#pragma once

#include <map>
#include <string>
#include <vector>

namespace KWTest {

/// What `qpdf --check` says.
struct QpdfReport {
    int exitCode = -1;
    std::string text;
};
QpdfReport checkWithQpdf(const std::string& path);

/// The numbers of the font /F1 of the first page.
struct QpdfFont {
    std::map<std::string, double> descriptor;  // by key, without those that are not numbers
    std::vector<double> box;                   // FontBBox
    std::map<unsigned short, double> widths{}; // W, by glyph id
};
QpdfFont readFont(const std::string& path);

} // namespace KWTest
