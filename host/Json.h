#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kora::host {

/// Writes one JSON value, indented. Calls come in the order of the text; inside an object each value follows a key.
class Json {
public:
    Json& key(std::string_view name);
    /// '{' or '['; @p inOneLine keeps what stands inside together.
    void begin(char bracket, bool inOneLine = false);
    void end(char bracket);  ///< '}' or ']'
    /// Bytes that are no UTF-8 are written as the characters of their numbers, as Latin-1 has them.
    void value(std::string_view text);
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool on) { raw(on ? "true" : "false"); }
    template <std::integral Number>
    void value(Number number) {
        raw(std::to_string(number));
    }
    void null() { raw("null"); }
    template <class Value>
    void field(std::string_view name, const Value& content) {
        key(name).value(content);
    }

    /// The text, with a line feed at its end.
    std::string text() const { return text_ + '\n'; }
    /// What was written since the last call, of a text that is too long to keep.
    std::string taken() { return std::exchange(text_, {}); }

private:
    void raw(std::string_view text);
    void separate();
    void newLine();

    std::string text_;
    int depth_ = 0, flat_ = 0;  // brackets that are open; those of them whose insides stand in one line
    bool first_ = true;         // nothing stands before this in its object or array
    bool keyed_ = false;        // a key stands before this
};

}  // namespace kora::host
