#include "logger.h"

#include <fmt/format.h>
#include <log4cxx/level.h>

log4cxx::LoggerPtr g_NQStdLogger = log4cxx::Logger::getLogger("NQStd");

namespace utils {

std::string formatLogLine(const std::string& where, const std::string& which, const std::string& text)
{
    return fmt::format(FMT_STRING("[{0}] [{1}] {2}"), where, which, text);
}

void writeLog(int level, const std::string& where, const std::string& which, const std::string& text)
{
    if (!g_NQStdLogger) {
        return;
    }
    try {
        const auto logLevel = log4cxx::Level::toLevel(level, log4cxx::Level::getInfo());
        if (g_NQStdLogger->isEnabledFor(logLevel)) {
            g_NQStdLogger->forcedLog(logLevel, formatLogLine(where, which, text), LOG4CXX_LOCATION);
        }
    } catch (...) {
        // A failing appender must not take a caller down: logging is best effort.
    }
}

}  // namespace utils
