// Combination positions for the tests of the combination panel: records of
// table 1030 as a paper broker would publish them.
#pragma once

#include "seam/tradingrecords.h"

#include <boost/make_shared.hpp>

#include <string>

namespace positionstest {

inline boost::shared_ptr<nqservice::CAccountInfo> combAccount(const std::string& key, int brokerId = 7,
                                                             int type = nqservice::VQ_BROKER_TYPE_STOCK_OPTION)
{
    auto info = boost::make_shared<nqservice::CAccountInfo>();
    info->accountId = key;
    info->displayName = "模拟" + key;
    info->accountType = type;
    info->brokerId = brokerId;
    return info;
}

// A combination of two 50ETF legs of the test universe (calls 1000001x, puts 1000002x).
inline boost::shared_ptr<nqservice::CStkOptCombPositionDetail> combPosition(
    const boost::shared_ptr<nqservice::CAccountInfo>& account, const std::string& combId, int volume,
    const std::string& strategy = "CNSJC", const std::string& legOne = "10000010",
    const std::string& legTwo = "10000011")
{
    auto detail = boost::make_shared<nqservice::CStkOptCombPositionDetail>();
    detail->account = account;
    detail->market = "SH";
    detail->combId = combId;
    detail->strategyCode = strategy;
    detail->name = "认购牛市价差";
    detail->volume = volume;
    detail->releaseVolume = volume;
    detail->legOneCode = legOne;
    detail->legOneType = '0';  // long, as the paper broker records a leg's direction
    detail->legOneExtra = volume;
    detail->legTwoCode = legTwo;
    detail->legTwoType = '1';  // short
    detail->legTwoExtra = volume;
    return detail;
}

}  // namespace positionstest
