#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// A buffer of exactly `room` bytes on the heap, filled with '~' behind the text it starts with and guarded on both
/// sides. A NUL follows the text where there is room for one.
class SizedBuffer {
public:
    explicit SizedBuffer(std::size_t room, std::string_view text = {})
        : room_(room), bytes_(std::make_unique<char[]>(room + 2 * kGuard)) {
        std::fill_n(bytes_.get(), room + 2 * kGuard, '~');
        std::copy_n(text.data(), std::min(room, text.size()), data());
        if (text.size() < room) data()[text.size()] = '\0';
    }
    ~SizedBuffer() {
        const std::string intact(kGuard, '~');
        EXPECT_EQ(std::string_view(bytes_.get(), kGuard), intact) << "written before the buffer";
        EXPECT_EQ(std::string_view(data() + room_, kGuard), intact) << "written behind the buffer";
    }
    SizedBuffer(const SizedBuffer&) = delete;
    SizedBuffer& operator=(const SizedBuffer&) = delete;

    char* data() { return bytes_.get() + kGuard; }
    int size() const { return static_cast<int>(room_); }
    /// Every byte of the buffer, with '.' for NUL.
    std::string bytes() {
        std::string all(data(), room_);
        for (char& c : all) c = c == '\0' ? '.' : c;
        return all;
    }
    std::string text() { return std::string(data(), room_).substr(0, std::string(data(), room_).find('\0')); }

private:
    static constexpr std::size_t kGuard = 16;
    std::size_t room_;
    std::unique_ptr<char[]> bytes_;
};

/// Random texts over a small alphabet, so that they often agree.
template <class Random>
std::string randomText(Random& random, std::string_view alphabet, std::size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    return text;
}
