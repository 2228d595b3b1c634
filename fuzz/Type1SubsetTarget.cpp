// The encrypted section of a Type 1 font, decrypted, and a list of codes: the first byte says how
// many, which follow; the rest is the section. Glyphs are selected of it, and of the result again.

#include "FuzzTarget.h"
#include "embed/Type1Subset.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace KWFontService_NS;

std::optional<std::string> subset(std::string_view section, std::string_view codes,
                                  const Type1CodeNames& names) {
    KWMemStream output;
    if (!subsetEexecSection(section, codes, names, output))
        return std::nullopt;
    // The number of glyphs may have been written without blanks around it.
    constexpr std::size_t kNumber = sizeof("18446744073709551615 dict dup begin\n");
    if (output.size() > section.size() + kNumber)
        std::abort();
    return std::string(output.data(), output.size());
}

void select(std::string_view section, std::string_view codes, const Type1CodeNames& names) {
    const auto once = subset(section, codes, names);
    if (!once)
        return;
    // What was selected is found again, unless that is nothing.
    const auto again = subset(*once, codes, names);
    if (again && *again != *once)
        std::abort();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size - 1 < data[0])
        return 0;
    const std::string_view input(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string_view codes = input.substr(0, data[0]);
    const std::string_view section = input.substr(data[0]);
    select(section, codes, {});
    Type1CodeMap given;
    given.addCMapEntry(1, 'A', "Aacute");
    select(section, codes, {.fontNumber = 1, .codes = &given});
    return 0;
}
