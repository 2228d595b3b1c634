#include "registry/FolderScan.h"

#include "common/TextView.h"
#include "platform/Platform.h"
#include "registry/FontFileLoader.h"
#include "registry/FontSelection.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <iterator>
#include <limits>
#include <set>
#include <vector>

namespace KWFontService_NS {

namespace {

using KWPlatform::DirectoryEntry;
using KWPlatform::DirectoryIdentity;

std::u16string localPath(const KWUri& folder) {
    return std::u16string(KWCommonNS::toView(folder.getLocalPath()));
}

std::vector<DirectoryEntry> entriesOf(const KWUri& folder) {
    auto entries = KWPlatform::system().listDirectory(localPath(folder));
    return entries ? std::move(*entries) : std::vector<DirectoryEntry>();
}

/// Loads an entry of a folder, if it is a font file.
bool loadEntry(FS_FontService& service, const FS_FontFolder& folder, const DirectoryEntry& entry) {
    const FS_FontFile file(folder, KWCommonNS::toText(entry.name));
    return isFontFile(service, folder, file) &&
           loadFont(service, folder, file, FS_LOAD_FOLDER) != nullptr;
}

FS_FontKey keyOf(const FS_FontAlias& alias) {
    return FS_FontKey::ofRequest(alias.weight != -1 ? alias.weight : 0, alias.italic == 1,
                                 alias.stretch);
}

/// Gives fonts the alias names that a folder asks for. A file is looked for among all fonts found
/// so far: one of that name from any folder serves.
void attachAliases(FS_FontService& service, const FS_FontFolder& folder) {
    for (const auto& [target, aliases] : folder.fileAliases) {
        const auto file = service.fontPool.byFileName.find(target.lowerFileName);
        if (file == service.fontPool.byFileName.end())
            continue;
        for (const FS_FontAlias& alias : aliases) {
            FS_FontRef ref = selectFont(file->second, file->second.begin()->first);
            // An entry of 0 is reported and taken nevertheless; no font has such a face.
            ref.face = static_cast<std::int16_t>(
                std::clamp<int>(target.faceIndex, -1, std::numeric_limits<std::int16_t>::max()));
            FS_FontPool::addName(service.aliasPool.byName, normaliseFontName(alias.familyName), ref,
                                 keyOf(alias));
        }
    }
}

/// Takes the folders of a service one by one; those below a folder come right behind it. What is
/// left when the walk is broken off goes back to the service.
class FolderWalk {
public:
    explicit FolderWalk(FS_FontService& service) : service_(service) {
        for (auto& folder : service.folders) {
            // Whatever lies below a recursive folder is found by its own path.
            if (folder->recursive)
                enter(*folder);
            waiting_.push_back(std::move(folder));
        }
        service.folders.clear();
    }
    ~FolderWalk() {
        for (Folders* const rest : {&below_, &waiting_})
            std::move(rest->begin(), rest->end(), std::back_inserter(service_.folders));
    }
    FolderWalk(const FolderWalk&) = delete;
    FolderWalk& operator=(const FolderWalk&) = delete;

    void run() {
        while (!waiting_.empty()) {
            service_.folders.push_back(std::move(waiting_.front()));
            waiting_.pop_front();
            scan(*service_.folders.back());
        }
    }

private:
    using Folders = std::deque<std::unique_ptr<FS_FontFolder>>;

    void scan(const FS_FontFolder& folder) {
        for (const DirectoryEntry& entry : entriesOf(folder)) {
            if (entry.system)
                continue;
            if (!entry.directory)
                loadEntry(service_, folder, entry);
            else if (folder.recursive && !entry.hidden)
                addSubfolder(folder, entry);
        }
        queueSubfolders();
        attachAliases(service_, folder);
    }

    void addSubfolder(const FS_FontFolder& parent, const DirectoryEntry& entry) {
        auto folder = std::make_unique<FS_FontFolder>(
            KWUri::fromFileName(parent, KWCommonNS::toText(entry.name)), true);
        if (service_.findFolder(folder->pathKey()) != nullptr || !enter(*folder))
            return;
        // The walk may end for want of memory, and then gives back all it has.
        const std::size_t count = service_.folders.size() + waiting_.size() + below_.size() + 1;
        if (service_.folders.capacity() < count)
            service_.folders.reserve(2 * count);
        below_.push_back(std::move(folder));
        service_.folderByPath.emplace(below_.back()->pathKey(), below_.back().get());
    }

    void queueSubfolders() {
        waiting_.insert(waiting_.begin(), std::make_move_iterator(below_.begin()),
                        std::make_move_iterator(below_.end()));
        below_.clear();
    }

    /// False when the directory was entered already. One that cannot be read is new: the walk
    /// finds nothing in it.
    bool enter(const KWUri& folder) {
        const auto identity = KWPlatform::system().directoryIdentity(localPath(folder));
        return !identity || entered_.insert(*identity).second;
    }

    FS_FontService& service_;
    Folders waiting_;
    Folders below_; ///< those of the folder that is being scanned
    std::set<DirectoryIdentity> entered_;
};

} // namespace

void scanFolders(FS_FontService& service) {
    FolderWalk(service).run();
}

int addFontFolder(FS_FontService& service, const KWUri& uri) {
    if (!uri.isFile())
        return 0;
    const FS_FontFolder* folder = nullptr;
    {
        KWCommonNS::KWMutex mutex(g_fontServiceLock);
        mutex.lock();
        folder = service.addFolder(std::make_unique<FS_FontFolder>(uri, false));
    }
    if (folder == nullptr)
        return 0;
    int count = 0;
    for (const DirectoryEntry& entry : entriesOf(*folder)) {
        if (!entry.directory && !entry.system && loadEntry(service, *folder, entry))
            ++count;
    }
    return count;
}

} // namespace KWFontService_NS
