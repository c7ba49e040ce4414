#pragma once

#include <cstdint>

#include "core/TraceCodes.h"

/// The trace ring, inline for the library's own sources: the exported TraceData and TraceCode wrap these.
namespace kora {

struct TraceRing {
    static constexpr std::uint32_t kWords = 1024;
    bool recording;
    bool toFile;
    std::uint32_t count;  // words ever written; the next slot is count % kWords
    std::uint32_t lastCode;
    std::uint32_t trigger;
    std::uint32_t words[kWords];
};

// One block, so that one address serves the flag, the count and the ring.
extern TraceRing traceRing;

void traceTriggered();

inline void traceData(std::uint32_t word) {
    if (traceRing.recording) traceRing.words[traceRing.count++ % TraceRing::kWords] = word;
}

inline void traceCode(std::uint32_t code) {
    if (!traceRing.recording) return;
    traceRing.lastCode = code;
    traceRing.words[traceRing.count++ % TraceRing::kWords] = code;
    if (code == traceRing.trigger) [[unlikely]]
        traceTriggered();
}

/// A step of the library's own.
inline void traceStep(trace::Place place) { traceCode(place); }

}  // namespace kora
