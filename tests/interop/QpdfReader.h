#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace KWTest {

/// What `qpdf --check` says.
struct QpdfReport {
    int exitCode = -1;
    std::string text;
};
QpdfReport checkWithQpdf(const std::string& path);

/// A font of a PDF, and how it is used.
struct QpdfFont {
    std::string name;                          // BaseFont
    std::map<std::string, double> descriptor;  // by key, without those that are not numbers
    std::vector<double> box;                   // FontBBox
    std::map<unsigned short, double> widths{}; // W, by glyph id
    std::string program{};                     // FontFile2
    std::set<unsigned short> shown{};          // glyph ids in text of any page
    std::set<double> sizes{};                  // that the text has
    std::vector<double> baselines{};           // of its lines on the first page, up from the foot
};
/// The fonts of all pages by their resource names, "/F1" the first one. They must be Type 0 fonts
/// with two-byte codes, and be called the same on each page.
std::map<std::string, QpdfFont> readFonts(const std::string& path);

} // namespace KWTest
