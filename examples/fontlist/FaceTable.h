#pragma once

#include "FaceList.h"

#include <string>
#include <vector>

namespace fontlist {

/// Where a face comes from, what its file is, what it lets a document do, and the scripts that it
/// declares.
std::string sourceOf(const ListedFace& face);
std::string fileTypeOf(const ListedFace& face);
std::string embeddingOf(const ListedFace& face);
std::string scriptsOf(const ListedFace& face);

/// A line for each face under a line of headings, in columns; ends with a count.
std::string tableOf(const std::vector<ListedFace>& faces);

} // namespace fontlist
