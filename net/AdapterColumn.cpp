#include <algorithm>

#include "net/StatusColumn.h"

namespace kora {

namespace {

constexpr int kNamesShown = 16;

/// The fields of an adapter's status, little-endian, by their place.
class Status {
public:
    explicit Status(const unsigned char* bytes) : bytes_(bytes) {}
    int byte(int at) const { return bytes_[at]; }
    int word(int at) const { return bytes_[at] | bytes_[at + 1] << 8; }
    long number(int at) const { return static_cast<std::int32_t>(unsigned(word(at)) | unsigned(word(at + 2)) << 16); }

private:
    const unsigned char* bytes_;
};

}  // namespace

void adapterColumn(StatusColumn& column, int number, const unsigned char* bytes) {
    const Status status(bytes);
    column.line("Adapter Status: %d", number);
    column.halfLine();
    column.indent();
    column.line("Unit ID %02x%02x%02x%02x%02x%02x ", status.byte(5), status.byte(4), status.byte(3), status.byte(2),
                status.byte(1), status.byte(0));
    column.line("Adapter Type %x", status.byte(8));
    column.line("Rev %x.%x", status.byte(6), status.byte(9));
    column.line("Duration: %d", status.word(10));
    column.halfLine();
    column.line("Frame Recv: %d", status.word(12));
    column.line("Frame Xmit: %d", status.word(14));
    column.line("Recv Error: %d", status.word(16));
    column.line("Xmit Aborts: %d", status.word(18));
    column.line("Xmit Success: %ld", status.number(20));
    column.line("Recv Success: %ld", status.number(24));
    column.line("Xmit Error: %d", status.word(28));
    column.line("Recv Buf Unavail: %d", status.word(30));
    column.line("Xmit Buf Unavail: %d", status.word(46));
    column.halfLine();
    column.line("T1 Timeouts: %d", status.word(32));
    column.line("Ti Timeouts: %d", status.word(34));
    column.halfLine();
    column.line("Free NCBs: %d", status.word(40));
    // The labels of these three are one field late; people know them so.
    column.line("Max NCBs: %d", status.word(42));
    column.line("Max Cfg NCBs: %d", status.word(42));
    column.line("Max NCBs: %d", status.word(44));
    column.line("Max Dgram Size: %d", status.word(48));
    column.line("Pending Sessions: %d", status.word(50));
    column.line("Max Cfg Sessions: %d", status.word(52));
    column.line("Max Sessions: %d", status.word(54));
    column.line("Max Session Pkt Size: %d", status.word(56));
    column.halfLine();
    for (int i = 0; i < std::min(status.word(58), kNamesShown); ++i) {
        const unsigned char* const name = bytes + 60 + i * 18;
        column.line("'%-16.16s' %2d %02x", reinterpret_cast<const char*>(name), name[16], name[17]);
    }
}

}  // namespace kora
