#include "services/market/csimclock.h"

#include "seam/common.h"

#include <cmath>

namespace market {

CSimClock::CSimClock(const QDateTime& start, double speed)
    : m_speed(speed), m_baseTime(TC::exchangeEpochMs(start)), m_baseWall(wallMs())
{
}

double CSimClock::wallMs()
{
    return utils::clockMSec();
}

long long CSimClock::currentTime() const
{
    if (m_speed == 0.0) {
        return m_baseTime.load();
    }
    const double elapsed = wallMs() - m_baseWall.load();
    return m_baseTime.load() + static_cast<long long>(std::llround(elapsed * m_speed));
}

void CSimClock::setDateTime(const QDateTime& exchangeLocal)
{
    m_baseWall.store(wallMs());
    m_baseTime.store(TC::exchangeEpochMs(exchangeLocal));
}

void CSimClock::advance(long long ms)
{
    m_baseTime.fetch_add(ms);
}

}  // namespace market
