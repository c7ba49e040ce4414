#include "tools/kora-trace/ReadLog.h"

#include "tools/kora-trace/LogReader.h"

namespace kora::tracelog {

Summary readLog(std::istream& log, Page& page, std::size_t dumps) {
    LastDumps passed(page, dumps);
    LogReader reader(passed);
    LineReader lines(log);
    for (Line line; lines.next(line);) reader.line(line);
    reader.end();
    return passed.end();
}

}  // namespace kora::tracelog
