// The client's clock: the server-adjusted time. Reached by TC::getTimeService();
// a host may install another (the desk's simulated clock) through
// utils::CManualSingletonT<TC::CTimeService>, otherwise the system clock answers.
#pragma once

#include <QDateTime>

namespace TC {

class CTimeService {
public:
    virtual ~CTimeService() = default;
    // Milliseconds since the epoch (UTC).
    virtual long long currentTime() const = 0;
    // The same time in the exchanges' local time (China Standard Time, UTC+8).
    QDateTime currentDateTime() const;
};

// The system clock, with an optional offset in milliseconds.
class CSystemTimeService : public CTimeService {
public:
    explicit CSystemTimeService(long long offsetMs = 0) : m_offsetMs(offsetMs) {}
    long long currentTime() const override;

private:
    long long m_offsetMs;
};

// The installed time service, or the system clock when none is installed. Never null.
CTimeService* getTimeService();

// Local exchange time of an epoch time in milliseconds, and back.
QDateTime exchangeDateTime(long long epochMs);
long long exchangeEpochMs(const QDateTime& exchangeLocal);

}  // namespace TC
