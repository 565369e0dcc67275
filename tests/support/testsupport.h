// Helpers shared by the test programs.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <functional>
#include <ostream>

namespace testsupport {

// Runs the Qt event loop until the predicate holds or the time runs out.
bool waitUntil(const std::function<bool()>& predicate, int timeoutMs = 5000);

}  // namespace testsupport

// Readable QStrings in GoogleTest failure messages.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
