// The services a winner test runs on: the board tests' services (simulated
// exchange and quote clients in test mode, a user settings store in a
// temporary directory, a clock at 10:00 on 2026-11-20) with a small fixed
// universe of 50ETF options whose figures are worked out by hand:
//
//   20261125  calls 2.9 (10000010), 3.0 (10000011), 3.1 (10000012)
//             puts  2.9 (10000020), 3.0 (10000021), 3.1 (10000022)
//   20261223  call 3.0 (10000041), put 3.0 (10000042)
#pragma once

#include "board/boardfixture.h"
#include "seam/userrecords.h"

#include <QDate>
#include <QDateTime>
#include <QString>

namespace winnertest {

inline market::TInstrumentList winnerUniverse()
{
    market::TInstrumentList list;
    list.push_back(boardtest::underlying("510050", "SH", "50ETF", 3.0));
    const double strikes[] = {2.9, 3.0, 3.1};
    for (int i = 0; i < 3; ++i) {
        boardtest::OptionSpec call;
        call.code = "1000001" + std::to_string(i);
        call.strike = strikes[i];
        list.push_back(boardtest::option(call));
    }
    for (int i = 0; i < 3; ++i) {
        boardtest::OptionSpec put;
        put.code = "1000002" + std::to_string(i);
        put.call = false;
        put.strike = strikes[i];
        list.push_back(boardtest::option(put));
    }
    boardtest::OptionSpec decCall;
    decCall.code = "10000041";
    decCall.expire = 20261223;
    list.push_back(boardtest::option(decCall));
    boardtest::OptionSpec decPut = decCall;
    decPut.code = "10000042";
    decPut.call = false;
    list.push_back(boardtest::option(decPut));
    return list;
}

// Seconds since 1970 at noon (local time) of a date yyyymmdd.
inline unsigned noonOf(int yyyymmdd)
{
    const QDate date(yyyymmdd / 10000, yyyymmdd / 100 % 100, yyyymmdd % 100);
    return static_cast<unsigned>(QDateTime(date, QTime(12, 0)).toSecsSinceEpoch());
}

inline TC::CWinnerSetting setting(double levelOne, double levelTwo, int startDate = 20261120,
                                  int endDate = 20261125)
{
    TC::CWinnerSetting out;
    out.levelOne = levelOne;
    out.levelTwo = levelTwo;
    out.startTime = noonOf(startDate);
    out.endTime = noonOf(endDate);
    return out;
}

inline QString key(const char* code) { return QString::fromLatin1(code) + QStringLiteral(".SH"); }

class WinnerTest : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        boardtest::BoardTest::SetUp();
        installUniverse(winnerUniverse());
    }

    void quoteAt(const std::string& code, double last, double preClose = 0.05, int volume = 0)
    {
        auto data = quote(code, last, preClose);
        data->volume = volume;
        publish(data);
    }
};

}  // namespace winnertest
