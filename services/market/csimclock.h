// A simulated exchange clock, so that the desk can show a trading market at any
// hour and tests can set the time. It runs from a chosen start at a chosen speed,
// or stands still until advanced. Safe to read from any thread.
#pragma once

#include "seam/ctimeservice.h"

#include <QDateTime>

#include <atomic>

namespace market {

class CSimClock : public TC::CTimeService {
public:
    // Starts at the local exchange time `start`; speed 1 runs with the wall clock,
    // speed 0 stands still.
    explicit CSimClock(const QDateTime& start, double speed = 1.0);

    long long currentTime() const override;

    // Jumps to a local exchange time (the speed stays).
    void setDateTime(const QDateTime& exchangeLocal);
    // Moves the clock on by milliseconds.
    void advance(long long ms);
    double speed() const { return m_speed; }

private:
    static double wallMs();
    const double m_speed;
    std::atomic<long long> m_baseTime;  // simulated epoch ms at wall time m_baseWall
    std::atomic<double> m_baseWall;
};

}  // namespace market
