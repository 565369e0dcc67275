#include "strategy/cstrategyquotebuffer.h"

namespace TC {

bool CStrategyQuoteBuffer::store(const boost::shared_ptr<CPriceData>& price)
{
    if (!price) {
        return false;
    }
    const QString key = QString::fromStdString(utils::vqStockKey(price->market, price->code));
    std::lock_guard<std::mutex> lock(m_mutex);
    const bool wasEmpty = m_pending.isEmpty();
    m_pending.insert(key, price);
    return wasEmpty;
}

CStrategyQuoteBuffer::TPending CStrategyQuoteBuffer::take()
{
    TPending out;
    std::lock_guard<std::mutex> lock(m_mutex);
    out.swap(m_pending);
    return out;
}

int CStrategyQuoteBuffer::pendingCount() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_pending.size();
}

}  // namespace TC
