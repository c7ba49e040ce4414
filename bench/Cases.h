#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

/// What is measured. A case has one line in cases.csv; here one operation of ours and what users would pick instead run
/// on the same input, made from a fixed seed, at three sizes each.
namespace kora::bench {

using Sizes = std::vector<long>;
/// Measures once at one size: what is prepared is prepared anew each time. Sets the items processed where an iteration
/// does the operation more than once.
using Body = std::function<void(benchmark::State& state, long size)>;

/// @param who "kora", or the peer
void measure(const std::string& name, const std::string& who, const Sizes& sizes, const Body& body);

/// Repeatable numbers, the same on every run and for every competitor.
class Random {
public:
    explicit Random(unsigned seed = 1) : engine_(seed) {}
    unsigned below(unsigned end) { return static_cast<unsigned>(engine_() % end); }
    unsigned long bits() { return engine_(); }

private:
    std::mt19937_64 engine_;
};

/// A folder for the files of one run, on disk, and one in memory; removed at the end.
const std::string& diskFolder();
const std::string& memoryFolder();

void addContainerCases();
void addFormatCases();
void addGeometryCases();
void addPathCases();
void addParseCases();
void addSettingsCases();
void addSheetCases();
void addStringCases();
void addTaskCases();
void addTraceCases();

}  // namespace kora::bench
