// What the desk does with a combination a trader double-clicks in the
// combination panel: it asks whether to release the combination and close
// both legs, listing the two closing orders (each leg at the other side's
// best, the combination's release volume), and on Yes sends the release and
// then the closing command. The broker takes them in that order.
#pragma once

#include "seam/tradingrecords.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <vector>

class QWidget;

namespace desk {

class CCombCloseHandler {
public:
    // The closing order of each leg: a long leg (direction '0') sells to close
    // (33) at the best bid, a short one buys to close (35) at the best ask.
    static std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> closingOrders(
        const nqservice::CStkOptCombPositionDetail& detail);
    // The question that lists the orders.
    static QString question(const nqservice::CStkOptCombPositionDetail& detail,
                            const std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& orders);
    // Asks at parent; on Yes sends both commands. True when they went out.
    static bool closeCombination(QWidget* parent, const boost::shared_ptr<nqservice::CStkOptCombPositionDetail>& detail);
};

}  // namespace desk
