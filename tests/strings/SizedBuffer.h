#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// A buffer of `room` bytes, filled with '~' behind the text it starts with and guarded on both sides. A NUL follows
/// the text where there is room for one.
class SizedBuffer {
public:
    explicit SizedBuffer(std::size_t room, std::string_view text = {}) : room_(room), bytes_(room + 2 * kGuard, '~') {
        const std::string_view held = text.substr(0, room);
        bytes_.replace(kGuard, held.size(), held);
        if (held.size() < room) data()[held.size()] = '\0';
    }
    ~SizedBuffer() {
        const std::string intact(kGuard, '~');
        EXPECT_EQ(bytes_.substr(0, kGuard), intact) << "written before the buffer";
        EXPECT_EQ(bytes_.substr(kGuard + room_), intact) << "written behind the buffer";
    }
    SizedBuffer(const SizedBuffer&) = delete;

    char* data() { return bytes_.data() + kGuard; }
    int size() const { return static_cast<int>(room_); }
    /// Every byte of the buffer, with '.' for NUL.
    std::string bytes() {
        std::string all = bytes_.substr(kGuard, room_);
        for (char& c : all) c = c == '\0' ? '.' : c;
        return all;
    }
    std::string text() { return bytes_.substr(kGuard, std::string_view(data(), room_).find('\0')).substr(0, room_); }

private:
    static constexpr std::size_t kGuard = 16;
    std::size_t room_;
    std::string bytes_;
};

/// Random texts over a small alphabet, so that they often agree.
template <class Random>
std::string randomText(Random& random, std::string_view alphabet, std::size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    return text;
}
