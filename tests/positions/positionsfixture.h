// The price quote panel on the board tests' services: the fixed 50ETF universe
// with a second underlying, 300ETF, that has a single month and, beside its
// standard call at 4.0, an adjusted call of the same strike.
#pragma once

#include "board/boardfixture.h"
#include "positions/chpfpricequotedatamodel.h"
#include "positions/chpfpricequotedatatable.h"
#include "positions/coptionpricequotepanel.h"

#include <memory>

namespace positionstest {

inline market::TInstrumentList universeWithTwoUnderlyings()
{
    market::TInstrumentList list = boardtest::defaultUniverse();
    list.push_back(boardtest::underlying("510300", "SH", "300ETF", 4.0));
    boardtest::OptionSpec call;
    call.code = "10000051";
    call.strike = 4.0;
    call.expire = 20261223;
    call.undlCode = "510300";
    list.push_back(boardtest::option(call));
    boardtest::OptionSpec put = call;
    put.code = "10000052";
    put.call = false;
    list.push_back(boardtest::option(put));
    boardtest::OptionSpec adjusted = call;
    adjusted.code = "10000053";
    adjusted.adjusted = true;
    adjusted.unit = 10265.0;
    list.push_back(boardtest::option(adjusted));
    return list;
}

class PriceQuoteTest : public boardtest::BoardTest {
protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
        installUniverse(universeWithTwoUnderlyings());
        publish(quote("510050", 3.05, 3.0));
        panel = std::make_unique<TC::COptionPriceQuotePanel>(9, nullptr);
        panel->resize(1600, 600);
    }
    void TearDown() override
    {
        panel.reset();
        BoardTest::TearDown();
    }
    // The host's hand-over: shown (or not), then the trade type, which fills the selector.
    void start(bool show = true)
    {
        if (show) {
            panel->show();
        }
        panel->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    }
    TC::CHpfPriceQuoteDataModel* model() { return panel->getModel(); }
    TC::CHpfPriceQuoteDataTable* table() { return panel->getTable(); }
    TC::CHpfPriceQuoteDataPtr row(const QString& strike) { return model()->rowOfStrike(strike); }
    // The strikes in the order the table shows them.
    QStringList shownStrikes()
    {
        QStringList strikes;
        for (int position = 0; position < table()->realRowCount(); ++position) {
            strikes << table()->rowData(table()->rowID(position))->textValue(0);
        }
        return strikes;
    }

    std::unique_ptr<TC::COptionPriceQuotePanel> panel;
};

}  // namespace positionstest
