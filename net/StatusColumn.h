#pragma once

#include <vector>

#include "platform/Platform.h"

namespace kora {

/// Lines of one column of the status window, from the top.
class StatusColumn {
public:
    static constexpr int kIndent = 10;

    StatusColumn(std::vector<platform::StatusLine>& lines, int x) : lines_(lines), x_(x) {}
    void line(const char* format, ...);
    void halfLine() { ++halfLine_; }
    void indent() { x_ += kIndent; }

private:
    std::vector<platform::StatusLine>& lines_;
    int x_;
    int halfLine_ = 0;
};

/// The column of adapter @p number. @p status is what it answered, 348 bytes in the published layout.
void adapterColumn(StatusColumn& column, int number, const unsigned char* status);

}  // namespace kora
