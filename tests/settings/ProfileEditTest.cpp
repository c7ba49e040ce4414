#include "settings/ProfileEdit.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "settings/ProfileTable.h"
#include "settings/ProfileText.h"

namespace {

using kora::ProfileLine;
using Kind = kora::ProfileLine::Kind;

std::string withEntry(const std::string& text, const std::string& section, const std::string& key,
                      const std::string& value) {
    std::string edited = "left over";
    kora::setProfileEntry(text, section, key, value, edited);
    return edited;
}

std::string shown(const ProfileLine& line) {
    const std::string name(line.name), value(line.value);
    return line.kind == Kind::header ? '[' + name + ']' : line.kind == Kind::entry ? name + '=' + value : "";
}

TEST(ProfileLines, EndAtANulAndAt1023Characters) {
    using namespace std::string_literals;
    // A line ends at its first NUL.
    EXPECT_EQ(shown(kora::readProfileLine("[Frame]\0x"s)), "[Frame]");
    EXPECT_EQ(shown(kora::readProfileLine("a b=c = d\0e"s)), "a b=c = d");
    EXPECT_EQ(shown(kora::readProfileLine("Ke\0y = a"s)), "");
    // Of a line 1023 characters are seen.
    const std::string x(1023, 'x'), x1 = x.substr(1), x2 = x.substr(2);
    const std::pair<std::string, std::string> limits[] = {{"K=" + x, "K=" + x2}, {x1 + "=a", x1 + "="},
                                                          {x + "=a", ""},        {"[" + x2 + "]", "[" + x2 + "]"},
                                                          {"[" + x1 + "]", ""},  {"[" + x2 + "]x", "[" + x2 + "]"}};
    for (const auto& [line, expected] : limits) EXPECT_EQ(shown(kora::readProfileLine(line)), expected);
}

TEST(ProfileEdit, PutsAnEntryWhereItBelongs) {
    struct Row {
        const char* before;
        const char* after;  // of [S] k = v
    };
    constexpr Row rows[] = {
        // in the place of the first entry of the key
        {"[S]\nk=1\nk=2\n", "[S]\nk = v\nk=2\n"},
        {"[a]\nk=0\n[ s ]\nj=1\nK\t=1 ;x\n", "[a]\nk=0\n[ s ]\nj=1\nk = v\n"},
        {"[S]\n[a]\n[S]\nk=1\n", "[S]\n[a]\n[S]\nk = v\n"},
        {"[S]\r\nk=1\r\n\r\n", "[S]\r\nk = v\r\n\r\n"},
        {"[S]\r\nk=1\r", "[S]\r\nk = v\r"},
        // behind the section's last entry
        {"[S]\nj=1\n; c\n\n[T]\nk=1\n", "[S]\nj=1\nk = v\n; c\n\n[T]\nk=1\n"},
        {"[S]\r\nj=1", "[S]\r\nj=1\r\nk = v"},
        {"[S]\nj=1\r\n[T]\n", "[S]\nj=1\r\nk = v\r\n[T]\n"},
        {"[S]\nj=1\n[T]\n[S]\ni=1\n", "[S]\nj=1\n[T]\n[S]\ni=1\nk = v\n"},
        // behind its header
        {"[S]\n\n; c\n[T]\n", "[S]\nk = v\n\n; c\n[T]\n"},
        {"[S]", "[S]\nk = v"},
        // a new section, behind one blank line
        {"", "[S]\nk = v\n"},
        {"[T]\nk=1\n", "[T]\nk=1\n\n[S]\nk = v\n"},
        {"[T]\nk=1\n \n", "[T]\nk=1\n \n[S]\nk = v\n"},
        {"[T]\r\nk=1\r\n", "[T]\r\nk=1\r\n\r\n[S]\r\nk = v\r\n"},
        {"[T]\nk=1", "[T]\nk=1\n\n[S]\nk = v"},
        // no headers
        {"v = [S]\n;[S]\nx[S]\n", "v = [S]\n;[S]\nx[S]\n\n[S]\nk = v\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.before);
        EXPECT_EQ(withEntry(row.before, "S", "k", "v"), row.after);
    }
}

TEST(ProfileEdit, RefusesWhatWouldNotBeReadBack) {
    const auto longer = [](std::size_t length) { return std::string(length, 'x'); };
    const std::array<std::string, 3> can[] = {
        {"S", "k", ""},           {"S", "k", " a = ; [b] "}, {"a=b", "[k]", "v"},     {"S", " k", "v"},
        {"S", longer(1021), "v"}, {longer(1021), "k", "v"},  {"S", "k", longer(5000)}};
    const std::array<std::string, 3> cannot[] = {
        {"S", "[k", "v]"}, {"S", "", "v"},      {"", "k", "v"},           {"S ", "k", "v"},        {"S", "k ", "v"},
        {"a]b", "k", "v"}, {"S", "a=b", "v"},   {"S", ";k", "v"},         {"S", "/k", "v"},        {"S", "k", "a\nb"},
        {"S", "k\n", "v"}, {"S\n[T", "k", "v"}, {"S", longer(1022), "v"}, {longer(1022), "k", "v"}};
    for (const auto& [section, key, value] : can) EXPECT_TRUE(kora::isProfileEntry(section, key, value)) << key;
    for (const auto& [section, key, value] : cannot) EXPECT_FALSE(kora::isProfileEntry(section, key, value)) << key;
}

// Against a model: lines read one by one, a map of what was set, and the bytes of every other line.

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        lines.back() += c;
        if (c == '\n') lines.emplace_back();
    }
    if (lines.back().empty()) lines.pop_back();
    return lines;
}

std::string lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return text;
}

std::string stripped(std::string text) {
    const char* blanks = " \t\r\n\v\f";
    text.erase(text.find_last_not_of(blanks) + 1);
    return text.erase(0, std::min(text.find_first_not_of(blanks), text.size()));
}

/// What a file says, by a reader that looks at each line in turn. First of equal names wins.
std::map<std::string, std::string> literalRead(const std::string& text) {
    std::map<std::string, std::string> entries;
    std::string section;
    for (std::string line : linesOf(text)) {
        if (line.ends_with('\n')) line.pop_back();
        line = line.substr(0, 1023).c_str();
        const std::string bare = stripped(line);
        if (line.starts_with(';') || line.starts_with('/')) continue;
        if (bare.size() > 2 && bare.starts_with('[') && bare.find(']') == bare.size() - 1 &&
            !stripped(bare.substr(1, bare.size() - 2)).empty()) {
            section = lower(stripped(bare.substr(1, bare.size() - 2)));
            continue;
        }
        const std::size_t equals = line.find('=');
        if (section.empty() || equals == line.npos) continue;
        std::string key = line.substr(0, equals);
        key.erase(key.find_last_not_of(" \t\r\v\f") + 1);
        bool printable = !key.empty();
        for (const char c : key) printable = printable && !std::iscntrl(static_cast<unsigned char>(c));
        if (printable) entries.try_emplace(section + '\n' + lower(key), stripped(line.substr(equals + 1)));
    }
    return entries;
}

class RandomProfile {
public:
    explicit RandomProfile(unsigned seed) : random_(seed) {}

    unsigned upTo(unsigned end) { return static_cast<unsigned>(random_() % end); }
    std::string name(const char* const (&names)[4]) {
        std::string name = names[upTo(4)];
        for (char& c : name)
            if (upTo(4) == 0) c = static_cast<char>(std::toupper(c));
        return name;
    }
    std::string section() { return name({"s", "frame", "my frame", "x=y"}); }
    std::string key() { return name({"k", "zoomed", "my key", "[k]"}); }
    std::string value() {
        const char* const values[] = {"", "1", "True", "a = b", "[s]", "; v", "\"q\"", "\xE4\x80"};
        return upTo(20) == 0 ? std::string(900 + upTo(300), 'v') : values[upTo(8)];
    }
    std::string blanks() { return std::string(upTo(3), upTo(2) == 0 ? ' ' : '\t'); }
    std::string line() {
        const unsigned kind = upTo(10);
        if (kind < 2) return blanks() + '[' + blanks() + section() + blanks() + ']' + blanks();
        if (kind == 2) return "; " + key() + " = " + value();
        if (kind == 3) return blanks();
        if (kind == 4) return '[' + section() + "]x";
        if (kind == 5) return std::string(1020 + upTo(8), 'c') + "=" + value();
        const std::string before = key() + blanks() + '=' + blanks();
        return before + (kind == 6 ? std::string(1, '\0') + value() : value() + blanks());
    }
    std::string text() {
        std::string text;
        const bool dos = upTo(2) == 0;
        for (unsigned count = upTo(30); count > 0; --count) text += line() + (dos != (upTo(8) == 0) ? "\r\n" : "\n");
        if (upTo(3) == 0) text += line();
        return text;
    }

private:
    std::mt19937 random_;
};

/// Whether @p after is @p before with one line changed, or with one to three lines put in somewhere.
bool everyOtherLineIsKept(const std::string& before, const std::string& after) {
    const auto old = linesOf(before), now = linesOf(after);
    std::size_t head = 0, tail = 0;
    while (head < old.size() && head < now.size() && old[head] == now[head]) ++head;
    while (tail < old.size() - head && tail < now.size() - head &&
           old[old.size() - 1 - tail] == now[now.size() - 1 - tail])
        ++tail;
    const std::size_t gone = old.size() - head - tail, come = now.size() - head - tail;
    if (gone == 0) return come <= 3;
    if (gone != 1) return false;
    // The last line had no line feed and got one.
    const bool grown = head + 1 == old.size() && now[head].starts_with(old[head]);
    return grown ? come <= 4 : come == 1;
}

TEST(ProfileEdit, AgreesWithAMapUnderRandomSettings) {
    for (unsigned seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        RandomProfile random(seed);
        std::string text = random.text();
        auto model = literalRead(text);
        for (int step = 0; step < 20; ++step) {
            const std::string section = random.section(), key = random.key(), value = random.value();
            if (!kora::isProfileEntry(section, key, value)) continue;
            const std::string after = withEntry(text, section, key, value);
            model[lower(section) + '\n' + lower(key)] =
                stripped((key + " = " + value).substr(key.size() + 2, 1021 - key.size()));
            ASSERT_EQ(literalRead(after), model) << '[' << section << "] " << key << " = " << value << '\n' << text;
            ASSERT_TRUE(everyOtherLineIsKept(text, after)) << text << "---\n" << after;
            ASSERT_EQ(text.empty() || text.ends_with('\n'), after.ends_with('\n'));
            // In lower case, since the table has sections as they are written.
            kora::ProfileTable table;
            table.add(lower(after));
            for (const std::string& sought : {key, random.key()}) {
                const auto wanted = model.find(lower(section) + '\n' + lower(sought));
                const auto found = table.value(lower(section), sought);
                ASSERT_EQ(found.has_value(), wanted != model.end()) << section << '/' << sought;
                ASSERT_EQ(found.value_or(""), found ? lower(wanted->second) : "");
            }
            text = after;
        }
    }
}

}  // namespace
