#include "seam/ctimeservice.h"

#include "seam/common.h"

namespace TC {

namespace {

// The exchanges keep China Standard Time, which has no daylight saving.
constexpr int kExchangeUtcOffsetSeconds = 8 * 3600;

}  // namespace

QDateTime CTimeService::currentDateTime() const
{
    return exchangeDateTime(currentTime());
}

long long CSystemTimeService::currentTime() const
{
    return QDateTime::currentMSecsSinceEpoch() + m_offsetMs;
}

CTimeService* getTimeService()
{
    if (CTimeService* installed = utils::CManualSingletonT<CTimeService>::instance()) {
        return installed;
    }
    static CSystemTimeService s_system;
    return &s_system;
}

QDateTime exchangeDateTime(long long epochMs)
{
    return QDateTime::fromMSecsSinceEpoch(epochMs, Qt::OffsetFromUTC, kExchangeUtcOffsetSeconds);
}

long long exchangeEpochMs(const QDateTime& exchangeLocal)
{
    QDateTime fixed(exchangeLocal.date(), exchangeLocal.time(), Qt::OffsetFromUTC, kExchangeUtcOffsetSeconds);
    return fixed.toMSecsSinceEpoch();
}

}  // namespace TC
