#include "fonts/FS_TrueType.h"
#include "registry/FontFileLoader.h"
#include "registry/RegistryFixture.h"
#include "support/RefusingNew.h"

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

class FontFileLoader : public RegistryTest {};

TEST_F(FontFileLoader, AFontObjectThatFindsNoMemoryIsAFailedFont) {
    write("a.ttf", namedFont(u"Alpha"));
    FS_FontFolder& folder = addFolder("", false);
    const FS_FontFile file(files().uri("a.ttf"));
    g_refusedSize = sizeof(FS_TrueType);
    FS_BaseFont* const font = loadFont(service(), folder, file, FS_LOAD_FOLDER);
    g_refusedSize = 0;
    EXPECT_EQ(font, nullptr);
    EXPECT_TRUE(service().errors.empty());
    EXPECT_NE(loadFont(service(), folder, file, FS_LOAD_FOLDER), nullptr);
}

} // namespace
