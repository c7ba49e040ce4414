#include "tools/kora-trace/LastDumps.h"

namespace kora::tracelog {

namespace {

// Notes and skipped lines that are held back, however few dumps stand among them.
constexpr std::size_t kMostOthers = 10'000;

void hand(Page& page, const Note& note) { page.note(note); }
void hand(Page& page, const Dump& dump) { page.dump(dump); }
void hand(Page& page, const Skipped& skipped) { page.skipped(skipped); }

}  // namespace

template <class Record>
void LastDumps::take(const Record& record) {
    if (most_ == kAll) return hand(page_, record);
    held_.emplace_back(record);
    while (heldDumps_ > most_ || held_.size() - heldDumps_ > kMostOthers) {
        if (std::holds_alternative<Dump>(held_.front())) {
            --heldDumps_;
            ++summary_.olderDumps;
        }
        held_.pop_front();
    }
}

void LastDumps::note(const Note& note) {
    ++summary_.notes;
    take(note);
}

void LastDumps::dump(const Dump& dump) {
    ++summary_.dumps;
    ++heldDumps_;
    take(dump);
}

void LastDumps::skipped(const Skipped& skipped) {
    summary_.skippedLines += skipped.lines;
    take(skipped);
}

Summary LastDumps::end() {
    for (const auto& record : held_) std::visit([&](const auto& any) { hand(page_, any); }, record);
    page_.end(summary_);
    return summary_;
}

}  // namespace kora::tracelog
