// Runs work later on the GUI thread, from any thread: the way service callbacks
// hand something to a panel without touching its widgets themselves.
#pragma once

#include <QObject>

#include <functional>

namespace TC {

class InvokeHelper {
public:
    virtual ~InvokeHelper() = default;

    // Queues the call to run on the thread of context; dropped if context is gone by then.
    static void invokeLater(QObject* context, std::function<void()> work);
};

}  // namespace TC
