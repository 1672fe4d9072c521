// A console reporter that also keeps each benchmark's CPU time, so that a benchmark program can print
// ratios between its runs after the usual output. CPU time, because on a busy machine the wall time of
// every run suffers from whatever else runs; with --benchmark_repetitions, the median of the
// repetitions.
#ifndef KEZ_BENCHMARKS_CPUTIMEREPORTER_H
#define KEZ_BENCHMARKS_CPUTIMEREPORTER_H

#include <benchmark/benchmark.h>

#include <map>
#include <set>
#include <string>
#include <vector>

class CpuTimeReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred)
                continue;
            const std::string name = run.run_name.str();
            if (run.run_type == Run::RT_Iteration && m_medians.count(name) == 0)
                m_cpu[name] = run.GetAdjustedCPUTime();
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                m_cpu[name] = run.GetAdjustedCPUTime();
                m_medians.insert(name);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // The CPU time of the named run in the benchmark's unit, or -1 if it did not run.
    double Time(const std::string &name) const
    {
        const auto it = m_cpu.find(name);
        return it == m_cpu.end() ? -1.0 : it->second;
    }

private:
    std::map<std::string, double> m_cpu;
    std::set<std::string> m_medians;
};

#endif
