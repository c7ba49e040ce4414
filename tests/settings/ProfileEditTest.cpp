#include "settings/ProfileEdit.h"

#include <gtest/gtest.h>

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

TEST(ProfileLines, AreHeadersEntriesOrNothing) {
    struct Row {
        std::string line;
        Kind kind;
        std::string name, value;
    };
    using namespace std::string_literals;
    const std::string limit(1023, 'x');
    const Row rows[] = {
        // headers
        {"[Frame]", Kind::header, "Frame", ""},
        {" \t[ \tMy Frame\t ] \r", Kind::header, "My Frame", ""},
        {"[a=b]", Kind::header, "a=b", ""},
        {"[]", Kind::other, "", ""},
        {"[  ]", Kind::other, "", ""},
        {"[Frame", Kind::other, "", ""},
        {"x [Frame]", Kind::other, "", ""},
        {"[Frame] x", Kind::other, "", ""},
        {"[Frame]\0x"s, Kind::header, "Frame", ""},
        // entries
        {"Key=Value", Kind::entry, "Key", "Value"},
        {"Key \t = \t a = b \r", Kind::entry, "Key", "a = b"},
        {"Key=", Kind::entry, "Key", ""},
        {"My key = ;x", Kind::entry, "My key", ";x"},
        {"[Frame] = x", Kind::entry, "[Frame]", "x"},
        {"\x80\xFF = \xE4", Kind::entry, "\x80\xFF", "\xE4"},
        {"Key = a\0b"s, Kind::entry, "Key", "a"},
        // comments and what is no line of ours
        {"; a = b", Kind::other, "", ""},
        {"/a = b", Kind::other, "", ""},
        {"= b", Kind::other, "", ""},
        {"  = b", Kind::other, "", ""},
        {"Key", Kind::other, "", ""},
        {"", Kind::other, "", ""},
        {" \t", Kind::other, "", ""},
        {"a\x01b = c", Kind::other, "", ""},
        {"a\x7f = c", Kind::other, "", ""},
        {"Ke\0y = a"s, Kind::other, "", ""},
        // white space before a key belongs to it
        {" Key = a", Kind::entry, " Key", "a"},
        {" ; = a", Kind::entry, " ;", "a"},
        // the limit: 1023 characters are seen
        {"K=" + limit, Kind::entry, "K", limit.substr(2)},
        {limit.substr(1) + "=a", Kind::entry, limit.substr(1), ""},
        {limit + "=a", Kind::other, "", ""},
        {"[" + limit.substr(2) + "]", Kind::header, limit.substr(2), ""},
        {"[" + limit.substr(1) + "]", Kind::other, "", ""},
        {"[" + limit.substr(2) + "]x", Kind::header, limit.substr(2), ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line.substr(0, 40));
        const ProfileLine line = kora::readProfileLine(row.line);
        EXPECT_EQ(line.kind, row.kind);
        EXPECT_EQ(line.name, row.name);
        EXPECT_EQ(line.value, row.value);
    }
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
        {"[S]\nk=1", "[S]\nk = v"},
        {"[S]\r\nk=1\r", "[S]\r\nk = v\r"},
        // behind the section's last entry
        {"[S]\nj=1\n; c\n\n[T]\nk=1\n", "[S]\nj=1\nk = v\n; c\n\n[T]\nk=1\n"},
        {"[S]\nj=1", "[S]\nj=1\nk = v"},
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
        {"x", "x\n\n[S]\nk = v"},
        {"k=1\n", "k=1\n\n[S]\nk = v\n"},
        // no headers
        {"v = [S]\n;[S]\nx[S]\n", "v = [S]\n;[S]\nx[S]\n\n[S]\nk = v\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.before);
        EXPECT_EQ(withEntry(row.before, "S", "k", "v"), row.after);
    }
}

TEST(ProfileEdit, RefusesWhatWouldNotBeReadBack) {
    struct Row {
        std::string section, key, value;
        bool can;
    };
    const Row rows[] = {
        {"S", "k", "", true},
        {"S", "k", " a = ; [b] ", true},
        {"a=b", "[k]", "v", true},
        {"S", "[k", "v]", false},  // would be a header
        {"S", "", "v", false},
        {"", "k", "v", false},
        {"S ", "k", "v", false},
        {"S", " k", "v", true},
        {"S", "k ", "v", false},
        {"a]b", "k", "v", false},
        {"S", "a=b", "v", false},
        {"S", ";k", "v", false},
        {"S", "/k", "v", false},
        {"S", "k", "a\nb", false},
        {"S", "k\n", "v", false},
        {"S\n[T", "k", "v", false},
        {"S", std::string(1021, 'k'), "v", true},
        {"S", std::string(1022, 'k'), "v", false},
        {std::string(1021, 'S'), "k", "v", true},
        {std::string(1022, 'S'), "k", "v", false},
        {"S", "k", std::string(5000, 'v'), true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.section.substr(0, 9) << '/' << row.key.substr(0, 9) << '/' << row.value);
        EXPECT_EQ(kora::isProfileEntry(row.section, row.key, row.value), row.can);
    }
}

// ---- against a model: lines read one by one, a map of what was set, and the bytes of every other line
// ----------------

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
        switch (upTo(10)) {
            case 0:
            case 1:
                return blanks() + '[' + blanks() + section() + blanks() + ']' + blanks();
            case 2:
                return "; " + key() + " = " + value();
            case 3:
                return blanks();
            case 4:
                return '[' + section() + ']' + 'x';
            case 5:
                return std::string(1020 + upTo(8), 'c') + "=" + value();
            case 6:
                return key() + blanks() + '=' + blanks() + std::string(1, '\0') + value();
            default:
                return key() + blanks() + '=' + blanks() + value() + blanks();
        }
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
            text = after;
        }
        // The table and the search read the same out of it, but for the letter case of sections.
        kora::ProfileTable table;
        table.add(text);
        for (const auto& [name, value] : model) {
            const std::string section = name.substr(0, name.find('\n')), key = name.substr(name.find('\n') + 1);
            ProfileLine line;
            kora::LinePlace place;
            ASSERT_TRUE(kora::findProfileEntry(text, section, key, line, place));
            ASSERT_EQ(line.value, value);
        }
    }
}

TEST(ProfileTable, AgreesWithALiteralReaderOnTextsInLowerCase) {
    for (unsigned seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const std::string text = lower(RandomProfile(seed).text());
        kora::ProfileTable table;
        table.add(text);
        const auto model = literalRead(text);
        for (const char* section : {"s", "frame", "my frame", "x=y", "none"})
            for (const char* key : {"k", "ZOOMED", "my Key", "[k]", "none"}) {
                const auto wanted = model.find(std::string(section) + '\n' + lower(key));
                const auto found = table.value(section, key);
                ASSERT_EQ(found.has_value(), wanted != model.end()) << section << '/' << key;
                ASSERT_EQ(found.value_or(""), found ? wanted->second : "");
            }
    }
}

}  // namespace
