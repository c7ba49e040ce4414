#pragma once

#include <deque>
#include <variant>

#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

/// Counts what passes to a page. With a number of dumps it holds the records back, and only the newest dumps pass, with
/// what stands between and behind them.
class LastDumps : public Sink {
public:
    static constexpr std::size_t kAll = static_cast<std::size_t>(-1);

    LastDumps(Page& page, std::size_t dumps) : page_(page), most_(dumps) {}
    void note(const Note& note) override;
    void dump(const Dump& dump) override;
    void skipped(const Skipped& skipped) override;
    /// Hands on what was held back, and the summary.
    Summary end();

private:
    template <class Record>
    void take(const Record& record);

    Page& page_;
    std::size_t most_;
    Summary summary_;
    std::deque<std::variant<Note, Dump, Skipped>> held_;
    std::size_t heldDumps_ = 0;
};

}  // namespace kora::tracelog
