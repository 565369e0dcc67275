// What the widget benchmarks share: the process's memory as /proc reports it,
// and a main that runs Google Benchmark inside a QApplication on the offscreen
// platform unless another is asked for.
#pragma once

#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace widgetbench {

// A field of /proc/self/status in kB ("VmRSS" resident now, "VmHWM" its peak).
inline long statusKb(const char* field)
{
    long value = 0;
    if (FILE* file = std::fopen("/proc/self/status", "r")) {
        char line[256];
        const std::size_t length = std::strlen(field);
        while (std::fgets(line, sizeof line, file) != nullptr) {
            if (std::strncmp(line, field, length) == 0 && line[length] == ':') {
                value = std::strtol(line + length + 1, nullptr, 10);
                break;
            }
        }
        std::fclose(file);
    }
    return value;
}

// Runs the benchmarks, then `after` (a summary) while the application still lives.
inline int run(int argc, char** argv, const std::function<void()>& after = {})
{
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (after) {
        after();
    }
    return 0;
}

}  // namespace widgetbench
