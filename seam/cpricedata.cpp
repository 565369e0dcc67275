#include "seam/cpricedata.h"

namespace TC {

namespace {

double CPriceData::*const kBidPrices[5] = {&CPriceData::bidPrice1, &CPriceData::bidPrice2, &CPriceData::bidPrice3,
                                           &CPriceData::bidPrice4, &CPriceData::bidPrice5};
double CPriceData::*const kAskPrices[5] = {&CPriceData::askPrice1, &CPriceData::askPrice2, &CPriceData::askPrice3,
                                           &CPriceData::askPrice4, &CPriceData::askPrice5};
int CPriceData::*const kBidVolumes[5] = {&CPriceData::bidVolume1, &CPriceData::bidVolume2, &CPriceData::bidVolume3,
                                         &CPriceData::bidVolume4, &CPriceData::bidVolume5};
int CPriceData::*const kAskVolumes[5] = {&CPriceData::askVolume1, &CPriceData::askVolume2, &CPriceData::askVolume3,
                                         &CPriceData::askVolume4, &CPriceData::askVolume5};

double firstUsable(double first, double second)
{
    return utils::isUsable(first) ? first : second;
}

bool validLevel(int level) { return level >= 1 && level <= 5; }

}  // namespace

double CPriceData::bidPrice(int level) const
{
    return validLevel(level) ? this->*kBidPrices[level - 1] : utils::kAbsentDouble;
}

double CPriceData::askPrice(int level) const
{
    return validLevel(level) ? this->*kAskPrices[level - 1] : utils::kAbsentDouble;
}

int CPriceData::bidVolume(int level) const
{
    return validLevel(level) ? this->*kBidVolumes[level - 1] : 0;
}

int CPriceData::askVolume(int level) const
{
    return validLevel(level) ? this->*kAskVolumes[level - 1] : 0;
}

void CPriceData::setBid(int level, double price, int volume)
{
    if (validLevel(level)) {
        this->*kBidPrices[level - 1] = price;
        this->*kBidVolumes[level - 1] = volume;
    }
}

void CPriceData::setAsk(int level, double price, int volume)
{
    if (validLevel(level)) {
        this->*kAskPrices[level - 1] = price;
        this->*kAskVolumes[level - 1] = volume;
    }
}

bool isBuyOperation(int operation)
{
    switch (operation) {
    case nqservice::OT_OPEN_LONG:
    case nqservice::OT_CLOSE_SHORT:
    case nqservice::OT_CLOSE_SHORT_TODAY:
    case nqservice::OT_BUY:
    case nqservice::OT_BUY_OPEN:
    case nqservice::OT_BUY_CLOSE:
    case nqservice::OT_COVERED_CLOSE:
        return true;
    default:
        return false;
    }
}

double CPriceData::getPriceForOrder(nqservice::EPriceType type, nqservice::EOperationType operation, int /*level*/,
                                    boost::shared_ptr<nqservice::CAutoPriceParam> /*autoParam*/,
                                    bool /*strict*/) const
{
    const int value = static_cast<int>(type);
    const bool buy = isBuyOperation(static_cast<int>(operation));
    const double own = buy ? bidPrice1 : askPrice1;
    const double other = buy ? askPrice1 : bidPrice1;
    if (value >= nqservice::PT_ASK5 && value <= nqservice::PT_ASK1) {
        return askPrice(nqservice::PT_ASK1 - value + 1);
    }
    if (value == nqservice::PT_LAST) {
        return lastPrice;
    }
    if (value >= nqservice::PT_BID1 && value <= nqservice::PT_BID5) {
        return bidPrice(value - nqservice::PT_BID1 + 1);
    }
    switch (value) {
    case nqservice::PT_FIX:
        return firstUsable(lastPrice, other);
    case nqservice::PT_LIMIT_UP_DOWN:
        return buy ? upStopPrice : downStopPrice;
    case nqservice::PT_QUEUE:
        return own;
    case nqservice::PT_OPPONENT:
    case nqservice::PT_FIX_FOK:
    case nqservice::PT_MARKET_FAK:
    case nqservice::PT_MARKET_FOK:
    case nqservice::PT_MARKET_TO_LIMIT:
        return other;
    default:
        return utils::kAbsentDouble;
    }
}

}  // namespace TC
