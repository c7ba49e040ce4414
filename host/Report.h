#pragma once

#include <string>

#include "host/Recorder.h"

namespace kora::host {

/// The report of a run. Its time begins when it is made.
class Report {
public:
    /// A report that stands in the file @p path from an earlier run is removed: should this one crash, there is none.
    explicit Report(std::string path);
    /// Writes the whole report, or leaves no file and tells the user. "-" is standard output.
    bool write(const RunRecord& record, int exitCode) const;

private:
    std::string text(const RunRecord& record, int exitCode) const;

    std::string path_;
    Clock::time_point begin_ = Clock::now();
    std::string started_;
};

}  // namespace kora::host
