// Helpers shared by the test programs.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <functional>

namespace testsupport {

// Runs the Qt event loop until the predicate holds or the time runs out.
bool waitUntil(const std::function<bool()>& predicate, int timeoutMs = 5000);

}  // namespace testsupport
