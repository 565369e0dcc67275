// The arithmetic of the strategy order dialogs that needs no widget: the
// operation a leg sends, the money one copy of a basket needs per account, the
// copies the funds allow, a leg's volume, the range a volume cell takes and the
// order parameter of one leg. Plain functions of their inputs.
#pragma once

#include "seam/tradingrecords.h"

#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <string>

namespace TC {

// What one leg of a basket costs per copy: its side, its price, the
// instrument's multiplier (field 3006) and short margin (field 3007), and the
// account's fee data for the instrument.
struct CLegMoney {
    bool buy = true;
    double price = 0.0;        // absent or 0 while the row has no price
    double multiplier = 0.0;   // field 3006, "合约单位"
    double marginPrice = 0.0;  // field 3007, margin of one short contract in 元
    double openBuyFee = 0.0;   // getUnitFee(fee, '0', '0')
    double openSellFee = 0.0;  // getUnitFee(fee, '0', '1')
    double marginRatio = 0.0;  // the fee data's margin record
    int quantity = 0;          // contracts per copy
};

// One leg as it goes into the command.
struct CLegOrder {
    nqservice::CStockInfo stock;
    boost::shared_ptr<nqservice::CAccountInfo> account;
    nqservice::EOperationType operationType = nqservice::OT_NONE;
    nqservice::EPriceType priceType = nqservice::PT_NONE;
    double price = 0.0;
    long long volume = 0;
    // The super-price cell's percentage, or a negative number when the cell is hidden.
    double superPricePercent = -1.0;
    std::string userName;
};

class CStrategyOrderRules {
public:
    // The operation a leg sends: buy (18) becomes buy to open (32), sell (19)
    // sell to open (34); any other value stands as it is.
    static nqservice::EOperationType legOperationType(int operation);
    // The contracts of a leg: the low 32 bits of its quantity.
    static int legQuantity(long long quantity);
    // Money for one copy of a leg: fee and premium for a buy, fee and margin
    // for a sell, times the leg's quantity. An unpriced buy costs its fee only.
    static double legNeed(const CLegMoney& leg);
    // The copies the funds pay for: for each account with a sum of needs above
    // 1e-5 and known funds, funds / sum truncated; the smallest of them, and
    // LLONG_MAX when no account counts.
    static long long availableCopies(const QMap<QString, double>& needByAccount,
                                     const QMap<QString, double>& fundsByAccount);
    // The top of a volume cell's integer range for an available number.
    static int volumeRangeTop(long long available);
    // What an available cell shows: the number, the largest 64-bit one included.
    static QString availableText(long long available);
    // Copies times a leg's quantity, the product taken in 32 bits as the order
    // screen has always done, then widened.
    static long long legVolume(int copies, int quantity);
    // The parameter of one leg: speculation (49), order kind 5, superPrice the
    // cell's percentage of the price when the cell shows.
    static boost::shared_ptr<nqservice::CCodeOrderParam> makeParam(const CLegOrder& leg);
    // Whether a user role may send a command from an order dialog.
    static bool roleSends(int role);
    // "委托价 0.0000 错误, 无法下单" and "合约 X 错误, 无法下单".
    static QString priceErrorText(double price);
    static QString codeErrorText(const QString& code);
};

}  // namespace TC
