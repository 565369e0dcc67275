// The table of the price ladder: 41 rows a tick apart, centred on the market,
// the five best bids and asks in their columns and the user's working volumes
// at either edge. It knows nothing of orders: the ladder widget writes the
// working volumes and reads back a clicked row's price.
#pragma once

#include "seam/cpricedata.h"
#include "toolkit/coddevenrowtable.h"

#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

namespace TC {

class CPriceTQuickOrderTable : public WG::COddEvenRowTable {
    Q_OBJECT
public:
    static constexpr int kRowCount = 41;
    enum EColumn { COL_BUY_WORKING = 0, COL_BID = 1, COL_PRICE = 2, COL_ASK = 3, COL_SELL_WORKING = 4 };

    explicit CPriceTQuickOrderTable(QWidget* parent);
    ~CPriceTQuickOrderTable() override;

    void updateQuoteTable(const boost::shared_ptr<TC::CPriceData>& price);
    // Selects the best bid's row and scrolls it into view.
    void scrollToBestBid();
    // A cell click goes up as UE_CELL_SECONDARY with the button behind data:
    // 1 the left button (an order), 2 the right one (a cancel).
    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

    QMap<QString, int> priceToRow;
    int bestBidRow = -1;
};

}  // namespace TC
