// The quotes that reached a strategy table on service threads and wait for the
// GUI thread: the newest record per stock key, under a lock held only to store
// or to take them all. A burst of quotes for one leg costs one update.
#pragma once

#include "seam/cpricedata.h"

#include <QHash>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <mutex>

namespace TC {

class CStrategyQuoteBuffer {
public:
    using TPending = QHash<QString, boost::shared_ptr<CPriceData>>;

    // Keeps the record as the newest of its key. True when the buffer was empty
    // before: the caller then asks the GUI thread once to take what waits.
    bool store(const boost::shared_ptr<CPriceData>& price);
    // Everything that waits, and an empty buffer.
    TPending take();
    int pendingCount() const;

private:
    mutable std::mutex m_mutex;
    TPending m_pending;
};

}  // namespace TC
