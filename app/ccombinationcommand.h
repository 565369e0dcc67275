// The command that builds a combination position, without a widget: operation
// 1090 of a strategy from two held legs (releases are the combination position
// panel's TC::CCombReleaseParams). The legs go in a COptionCombStrategyParam
// filled into the order's extra parameters (extraFlags bit 64), the price type
// is the strategy's, the price 0 and the code "A/B".
#pragma once

#include "seam/tradingrecords.h"

#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace desk {

class CCombinationCommand {
public:
    // A held option position that may be a leg.
    struct Leg {
        boost::shared_ptr<nqservice::CAccountInfo> account;
        std::string market;
        std::string code;
        std::string name;
        int direction = '0';
        long long available = 0;
    };

    // The strategies a build offers: codes and their names, in the same order.
    static const QStringList& strategyCodes();
    static QString strategyName(const QString& code);
    // The legs of an account among position records: its stock-option positions with contracts free.
    static std::vector<Leg> legsOf(const std::vector<nqservice::IDataPtr>& positions, const std::string& accountKey);
    // The command of a build; null with a reason in why when the input is not one.
    static boost::shared_ptr<nqservice::COrderComandParam> build(const QString& strategy, const Leg& one, const Leg& two,
                                                                long long volume, const std::string& userName,
                                                                QString* why);
};

}  // namespace desk
