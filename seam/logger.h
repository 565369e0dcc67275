// The process-wide logger and the system's line frame "[{0}] [{1}] {2}":
// where (function or object), which (line or function), and the text.
#pragma once

#include <log4cxx/logger.h>

#include <string>

extern log4cxx::LoggerPtr g_NQStdLogger;

namespace utils {

constexpr int kLogLevelInfo = 20000;   // log4cxx INFO
constexpr int kLogLevelError = 40000;  // log4cxx ERROR

// Formats one line in the system's frame. Never throws.
std::string formatLogLine(const std::string& where, const std::string& which, const std::string& text);
// Writes one framed line at the given log4cxx level (20000 or 40000).
void writeLog(int level, const std::string& where, const std::string& which, const std::string& text);

}  // namespace utils

#define NQ_LOG_INFO(text) ::utils::writeLog(::utils::kLogLevelInfo, __func__, std::to_string(__LINE__), (text))
#define NQ_LOG_ERROR(text) ::utils::writeLog(::utils::kLogLevelError, __func__, std::to_string(__LINE__), (text))
