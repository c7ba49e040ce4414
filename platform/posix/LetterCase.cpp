#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "platform/posix/Handles.h"
#include "platform/posix/NativePath.h"

namespace kora::platform::posix {

namespace {

unsigned char folded(char c) { return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); }

bool sameFolded(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return folded(x) == folded(y); });
}

std::uint64_t foldedHash(std::string_view name) {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const char c : name) hash = (hash ^ folded(c)) * 0x100000001b3u;
    return hash;
}

/// What a directory held when it was last read: the hashes of its folded names. It answers "no such name in any
/// letter case" for as long as the directory has not changed, so that files which are looked for and missing do not
/// cost a walk over the whole directory each time.
struct Listing {
    dev_t device = 0;
    ino_t node = 0;
    timespec changed = {};
    bool certain = false;               // every change of the directory shows in its change time
    std::vector<std::uint64_t> hashes;  // sorted once it is kept

    bool isOf(const struct stat& directory) const {
        return device == directory.st_dev && node == directory.st_ino && changed.tv_sec == directory.st_ctim.tv_sec &&
               changed.tv_nsec == directory.st_ctim.tv_nsec;
    }
    bool holds(std::uint64_t hash) const { return std::binary_search(hashes.begin(), hashes.end(), hash); }
};

constexpr std::size_t kMaxNames = 1'000'000;  // 8 MB in all

struct Listings {
    std::mutex mutex;

    /// The last listing of @p directory, which need not hold any longer; null when there is none.
    const Listing* last(const std::string& directory) const {
        const auto found = byDirectory_.find(directory);
        return found != byDirectory_.end() ? &found->second : nullptr;
    }

    /// The listing of @p directory, if it still holds; null otherwise.
    const Listing* of(const std::string& directory, const struct stat& asItStands) const {
        const Listing* listing = last(directory);
        return listing && listing->isOf(asItStands) ? listing : nullptr;
    }

    void keep(const std::string& directory, Listing listing) {
        std::sort(listing.hashes.begin(), listing.hashes.end());
        Listing& kept = byDirectory_[directory];
        names_ += listing.hashes.size() - kept.hashes.size();
        kept = std::move(listing);
        if (names_ <= kMaxNames && byDirectory_.size() <= kMaxDirectories) return;
        byDirectory_.clear();
        names_ = 0;
    }

private:
    static constexpr std::size_t kMaxDirectories = 256;

    std::unordered_map<std::string, Listing> byDirectory_;
    std::size_t names_ = 0;
};

Listings& listings() {
    static Listings& all = *new Listings;  // never destroyed: files are looked for until the very end
    return all;
}

/// Whether every change of a directory on the file system of @p descriptor moves its change time. It does on the
/// usual disks; what the system makes up, or fetches from elsewhere, comes and goes unannounced.
bool announcesChanges(int descriptor) {
    struct statfs system;
    if (fstatfs(descriptor, &system) != 0) return false;
    switch (system.f_type) {
        case BTRFS_SUPER_MAGIC:
        case EXT4_SUPER_MAGIC:
        case OVERLAYFS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case XFS_SUPER_MAGIC:
            return true;
        default:
            return false;
    }
}

/// Whether a change after the time @p now would be sure to show in a change time of @p changed. A file system that
/// counts whole (or two) seconds needs longer than one that counts the system's ticks.
bool isSettled(const timespec& changed, const timespec& now) {
    const std::int64_t age =
        (std::int64_t{now.tv_sec} - changed.tv_sec) * 1'000 + (std::int64_t{now.tv_nsec} - changed.tv_nsec) / 1'000'000;
    return age > (changed.tv_nsec % 10'000'000 == 0 ? 3'000 : 100);
}

/// The name in @p directory that is @p part, else the first in byte order that differs from it in letter case alone;
/// empty when there is none. @p asItStands describes the directory.
std::string variantIn(const std::string& directory, const struct stat& asItStands, std::string_view part) {
    Listings& all = listings();
    const std::lock_guard lock(all.mutex);
    if (const Listing* known = all.of(directory, asItStands); known && !known->holds(foldedHash(part))) return {};

    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    const DirectoryStream stream(opendir(directory.c_str()));
    struct stat opened;
    if (!stream || fstat(dirfd(stream.get()), &opened) != 0) return {};
    Listing listing{opened.st_dev, opened.st_ino, opened.st_ctim, announcesChanges(dirfd(stream.get())), {}};
    std::string best;
    bool exact = false;
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(stream.get());
        if (!entry) break;
        const std::string_view name = entry->d_name;
        if (listing.hashes.size() < kMaxNames) listing.hashes.push_back(foldedHash(name));
        if (exact || !sameFolded(name, part)) continue;
        exact = name == part;
        if (exact || best.empty() || name < best) best = name;
    }
    const bool whole = errno == 0 && listing.hashes.size() < kMaxNames;
    if (whole && isSettled(opened.st_ctim, now)) all.keep(directory, std::move(listing));
    return best;
}

bool isThere(const std::string& native) {
    struct stat ignored;
    return lstat(native.c_str(), &ignored) == 0;
}

}  // namespace

bool isKnownMissing(const std::string& native) {
    const std::size_t leaf = native.rfind('/') + 1;  // 0 without a directory, which is never listed
    const std::string directory = native.substr(0, leaf);
    Listings& all = listings();
    const std::lock_guard lock(all.mutex);
    // A name that was there is asked for itself.
    const Listing* last = all.last(directory);
    if (!last || !last->certain || last->holds(foldedHash(std::string_view(native).substr(leaf)))) return false;
    struct stat asItStands;
    return stat(directory.c_str(), &asItStands) == 0 && last->isOf(asItStands);
}

std::string findName(const std::string& native) {
    return isThere(native) || errno != ENOENT ? native : findVariant(native);
}

std::string findVariant(const std::string& native) {
    // The longest leading part that is there, and everything after it.
    struct stat directory;
    std::string found;
    std::size_t next = native.size();
    while (next > 0 && native[next - 1] == '/') --next;
    for (;;) {
        const std::size_t slash = next > 0 ? native.rfind('/', next - 1) : std::string::npos;
        next = slash == std::string::npos ? 0 : slash + 1;
        found = native.substr(0, next);
        if (stat(next == 0 ? "." : found.c_str(), &directory) == 0) break;
        if (next <= 1) return native;
        --next;
    }
    // From here on found ends in a separator, unless it is empty. The first part is known to be missing.
    for (bool known = true; next < native.size(); known = false) {
        const std::size_t end = std::min(native.find('/', next), native.size());
        std::string part = native.substr(next, end - next);
        if (known || !isThere(found + part)) {
            if (!known && stat(found.c_str(), &directory) != 0) break;
            part = variantIn(found.empty() ? "." : found, directory, part);
            if (part.empty()) break;
        }
        found += part;
        if (end < native.size()) found += '/';
        next = std::min(end + 1, native.size());
    }
    return found + native.substr(next);
}

}  // namespace kora::platform::posix
