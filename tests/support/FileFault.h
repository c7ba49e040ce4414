#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"

namespace kora::test {

/// Makes the nth file operation from here fail (counted from 1), once or from then on. A write that fails leaves half
/// of its bytes behind, as a full disk does.
class FileFault : public platform::FileSystem {
public:
    explicit FileFault(int nth, platform::Cause cause = platform::Cause::full, bool persistent = false)
        : nth_(nth), cause_(cause), persistent_(persistent), before_(platform::fileSystemSet(this)) {}
    ~FileFault() override { platform::fileSystemSet(before_); }

    bool wasHit() const { return count_ >= nth_; }

    bool status(const std::string& path, platform::FileStatus& status, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::status(path, status, failure);
    }
    bool kind(const std::string& path, platform::FileKind& kind, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::kind(path, kind, failure);
    }
    bool read(const std::string& path, std::string& bytes, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::read(path, bytes, failure);
    }
    bool write(const std::string& path, std::string_view bytes, platform::WriteMode mode, bool flush,
               platform::Failure& failure) override {
        if (!fails(failure)) return FileSystem::write(path, bytes, mode, flush, failure);
        platform::Failure ignored;
        FileSystem::write(path, bytes.substr(0, bytes.size() / 2), mode, false, ignored);
        return false;
    }
    bool writeLike(const std::string& path, const std::string& model, std::string_view bytes,
                   platform::Failure& failure) override {
        if (!fails(failure)) return FileSystem::writeLike(path, model, bytes, failure);
        platform::Failure ignored;
        FileSystem::writeLike(path, model, bytes.substr(0, bytes.size() / 2), ignored);
        return false;
    }
    bool resolveLinks(const std::string& path, std::string& target, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::resolveLinks(path, target, failure);
    }
    bool remove(const std::string& path, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::remove(path, failure);
    }
    bool link(const std::string& from, const std::string& to, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::link(from, to, failure);
    }
    bool rename(const std::string& from, const std::string& to, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::rename(from, to, failure);
    }
    bool createDirectory(const std::string& path, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::createDirectory(path, failure);
    }
    bool removeDirectory(const std::string& path, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::removeDirectory(path, failure);
    }
    bool list(const std::string& path, std::vector<platform::DirectoryEntry>& entries,
              platform::Failure& failure) override {
        return !fails(failure) && FileSystem::list(path, entries, failure);
    }
    bool setCreationTime(const std::string& path, std::int64_t time, platform::Failure& failure) override {
        return !fails(failure) && FileSystem::setCreationTime(path, time, failure);
    }

private:
    bool fails(platform::Failure& failure) {
        ++count_;
        if (persistent_ ? count_ < nth_ : count_ != nth_) return false;
        failure = {cause_, 0};
        return true;
    }

    int nth_;
    platform::Cause cause_;
    bool persistent_;
    int count_ = 0;
    platform::FileSystem* before_;
};

}  // namespace kora::test
