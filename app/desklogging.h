// Sends the process's log lines to a rolling file in the configuration directory.
#pragma once

#include <QString>

namespace desk {

// Returns false with the reason when the file cannot be opened.
bool startFileLogging(const QString& configDir, QString* error);
// Detaches the file appender, so that a later start may use another directory.
void stopFileLogging();
QString logFilePath(const QString& configDir);

}  // namespace desk
