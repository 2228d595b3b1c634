// Lists the fonts that the service knows, as a table and, when asked, as a specimen sheet.

#include "FaceList.h"
#include "FaceTable.h"
#include "Options.h"
#include "SpecimenSheet.h"
#include "shared/OutputFile.h"
#include "shared/Service.h"
#include "shared/Utf8.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace fontlist {

using namespace KWFontService_NS;
using examples::toUtf8;
using KWCommonNS::KWUri;

namespace {

enum ExitCode : int { ok = 0, usage = 1, fonts = 2, output = 4 };

int fail(ExitCode code, const char* message) {
    std::fprintf(stderr, "fontlist: %s\n", message);
    if (code == usage)
        std::fprintf(stderr, "Try 'fontlist --help'.\n");
    return code;
}

void bring(const Options::Brought& brought, FS_ExtraFontManager& document) {
    KWError error;
    if (document.appendExtraFont(icu::UnicodeString::fromUTF8(brought.file),
                                 icu::UnicodeString::fromUTF8(brought.family), 0, -1,
                                 FS_FILETYPE_UNKNOWN, &error) < 0)
        throw std::runtime_error(toUtf8(error.getMessage()));
}

std::vector<ListedFace> findFaces(const Options& options, FS_ExtraFontManager& document) {
    for (const std::string& note : examples::openService(options.config))
        std::fprintf(stderr, "fontlist: %s\n", note.c_str());
    for (const std::string& folder : options.folders)
        FS_AddFontFolderPath(KWUri(icu::UnicodeString::fromUTF8(folder), KWCommonNS::URISTR_LOCAL));
    for (const Options::Brought& brought : options.brought)
        bring(brought, document);

    if (options.names.empty())
        return listFaces(icu::UnicodeString(), document);
    std::vector<ListedFace> faces;
    for (const std::string& name : options.names) {
        const std::vector<ListedFace> named =
            listFaces(icu::UnicodeString::fromUTF8(name), document);
        if (named.empty())
            throw std::runtime_error("there is no font '" + name + "'");
        faces.insert(faces.end(), named.begin(), named.end());
    }
    return faces;
}

} // namespace

void print(const char* text) {
    if (std::fputs(text, stdout) < 0 || std::fflush(stdout) != 0)
        throw std::runtime_error("cannot write to standard output");
}

int run(const Options& options) {
    FS_ExtraFontManager document;
    std::vector<ListedFace> faces;
    try {
        faces = findFaces(options, document);
    } catch (const std::runtime_error& failure) {
        return fail(ExitCode::fonts, failure.what());
    }
    print(tableOf(faces).c_str());
    if (!options.pngPath.empty()) {
        const std::vector<unsigned char> png = drawSpecimens(
            faces, document, {icu::UnicodeString::fromUTF8(options.text), options.dpi});
        examples::writeFile(options.pngPath, png.data(), png.size());
    }
    return ok;
}

} // namespace fontlist

int main(int argc, char** argv) {
    try {
        const fontlist::Options options = fontlist::parseOptions({argv + 1, argv + argc});
        if (!options.help)
            return fontlist::run(options);
        fontlist::print(fontlist::kUsage.data());
        return fontlist::ok;
    } catch (const std::invalid_argument& wrong) {
        return fontlist::fail(fontlist::usage, wrong.what());
    } catch (const KWCommonNS::KWError& error) {
        return fontlist::fail(fontlist::fonts, examples::toUtf8(error.getMessage()).c_str());
    } catch (const std::exception& failure) {
        return fontlist::fail(fontlist::output, failure.what());
    }
}
