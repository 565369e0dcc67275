// Sends the process's log lines to a file in the configuration directory,
// rolled over at start when it has grown large.
#pragma once

#include <QString>

namespace desk {

// Returns false with the reason when the file cannot be opened.
bool startFileLogging(const QString& configDir, QString* error);
// Detaches the file appender, so that a later start may use another directory.
void stopFileLogging();
QString logFilePath(const QString& configDir);
// At start: a log of kLogRollBytes or more becomes optdesk.log.1, older ones move
// up one, and the kLogBackups-th is dropped.
void rollLogFiles(const QString& configDir);
constexpr long long kLogRollBytes = 5LL * 1024 * 1024;
constexpr int kLogBackups = 3;

}  // namespace desk
