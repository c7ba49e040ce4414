#include "net/StatusPage.h"

#include <kora/Str.h>

#include <cstdarg>

#include "net/StatusColumn.h"
#include "strings/Guarded.h"

namespace kora {

namespace {

constexpr int kCountersX = 10;
constexpr int kAdapterX[] = {180, 330};

}  // namespace

void StatusColumn::line(const char* format, ...) {
    char text[128];
    va_list arguments;
    va_start(arguments, format);
    Strvsprintf(text, format, arguments);
    va_end(arguments);
    lines_.push_back({x_, halfLine_, text});
    halfLine_ += 2;
}

std::vector<platform::StatusLine> NetStatusPage::of(void* pointer) {
    const NetBIOS& object = *static_cast<const NetBIOS*>(pointer);
    const NetCounters& counters = object.counters;
    std::vector<platform::StatusLine> lines;
    guarded([&] {
        StatusColumn column(lines, kCountersX);
        column.line("Adapter: %d", object.adapter);
        column.line("Group: '%-16.16s'", object.groupName);
        column.line("Name Number: %d", object.nameNumber);
        column.halfLine();
        column.line("Wrappers Alloc: %d", counters.wrappersAllocated);
        column.line("Wrappers Freed: %d", counters.wrappersFreed);
        column.line("Memory Alloc: %d", counters.blocksAllocated);
        column.line("Memory Alloc Fail: %d", counters.allocationFailures);
        column.line("Memory Freed: %d", counters.blocksFreed);
        column.halfLine();
        column.line("Dgrams Sent: %d", counters.datagramsSent);
        column.line("Send Complete: %d", counters.sendCompletions);
        column.line("Last Send Code: %d", counters.lastSendCode);
        column.halfLine();
        column.line("Recvs Posted: %d", counters.receivesPosted);
        column.line("Recv Complete: %d", counters.receiveCompletions);
        column.line("Last Recv Code: %d", counters.lastReceiveCode);
        for (int number = 0; number < 2; ++number) {
            if (object.adapterStatus[number] == nullptr) continue;
            StatusColumn adapter(lines, kAdapterX[number]);
            adapterColumn(adapter, number, object.adapterStatus[number]);
        }
    });
    return lines;
}

CString NetStatusPage::text(NetBIOS& object) {
    CString text;
    int next = 0, left = kCountersX;
    for (const platform::StatusLine& line : of(&object)) {
        // A half line left free, or the next column.
        if (line.halfLine != next) text += '\n';
        if (line.halfLine == 0) left = line.x;
        if (line.x > left) text += "  ";
        text += line.text + '\n';
        next = line.halfLine + 2;
    }
    return text;
}

}  // namespace kora
