#pragma once

#include "GposOracle.h"
#include "GsubOracle.h"

#include <KWFontService17/FS_FontInfo.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace KWTest::oracle {

/// One call, with all that it depends on.
struct Case {
    enum class Call { ProcessGSUB, ProcessGSUB3, ProcessGPOS, ProcessGPOS3 };

    Call call = Call::ProcessGSUB;
    Tag tag = 0;              // of the calls by feature
    int index = 0;            // a place in the line, or in the lookup order
    Line line{};              // substitution looks at its slots alone
    std::vector<int> words{}; // masks of ProcessGSUB3
    int alternate = 1;
    bool rtl = false;

    bool byFeature() const { return call == Call::ProcessGSUB || call == Call::ProcessGPOS; }
    Kind kind() const {
        return call == Call::ProcessGSUB || call == Call::ProcessGSUB3 ? Kind::Gsub : Kind::Gpos;
    }
};

/// Asks the library and the oracle the same.
class LayoutComparison {
public:
    struct FreeHandle {
        void operator()(KWFontService_NS::FS_GSUBGPOSInfo* info) const {
            KWFontService_NS::FS_FontInfo::deleteGSUBGPOSInfo(info);
        }
    };
    using LibraryHandle = std::unique_ptr<KWFontService_NS::FS_GSUBGPOSInfo, FreeHandle>;

    LayoutComparison(const Font& font, LibraryHandle library, Tag script, Tag language);

    /// Both answers of a call that differ, of the smallest run that the one given leads to; empty
    /// when they are equal.
    std::string check(const Case& asked);

    /// The lookups that a feature or an entry of the lookup order brings.
    std::vector<const Lookup*> lookupsOf(const Case& asked) const;
    int orderSize(Kind kind) const;
    /// The tags of the language system's features, each once.
    std::vector<Tag> features(Kind kind) const;

    struct Counts {
        int cases = 0;
        int undefined = 0;
        std::map<std::pair<Kind, int>, int> applied{}; // by lookup type
    };
    const Counts& counts() const { return counts_; }

private:
    /// Both answers when they differ.
    std::string differences(const Case& asked);
    std::string compareGSUB(const Case& asked, GsubOracle& oracle) const;
    std::string compareGSUB3(const Case& asked, GsubOracle& oracle) const;
    std::string compareGPOS(const Case& asked, GposOracle& oracle) const;

    const Layout& layout(Kind kind) const;
    const LangSys* system(Kind kind) const;
    std::vector<int> lookupIndices(const Case& asked) const;
    std::string describe(const Case& asked) const;

    Handle handle_;
    LibraryHandle library_;
    Counts counts_{};
};

} // namespace KWTest::oracle
