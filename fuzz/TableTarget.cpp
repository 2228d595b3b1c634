// One table inside a font that is sound otherwise: the input is an index into `kFuzzTables`, then
// the table. This reaches into tables that a mutated file as a whole seldom comes to.

#include "FontExercise.h"
#include "FuzzTables.h"
#include "FuzzTarget.h"
#include "support/TestFont.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    static const KWTest::TestFont kSound = KWTest::TestFont::vertical();
    KWTest::TestFont font = kSound;
    font.with(KWFuzz::kFuzzTables[data[0] % KWFuzz::kFuzzTables.size()],
              KWTest::Bytes(std::vector<std::uint8_t>(data + 1, data + size)));
    const KWTest::Bytes file = font.build();
    KWFuzz::exerciseFont(file.data(), file.size());
    return 0;
}
