// The services a strategy workbench test runs on: the board tests' fixed 50ETF
// universe and quote client in test mode, a user settings store in a temporary
// directory, and a recorder above the widget under test.
#pragma once

#include "board/boardfixture.h"
#include "strategy/cstrategybaskets.h"
#include "support/testsupport.h"
#include "toolkit/widgets/widgettestsupport.h"

#include <QApplication>

namespace strategytest {

inline TC::CStrategyStockData leg(const char* code, long long quantity, nqservice::EOperationType operation,
                                  bool checked = true, double weight = 1.0)
{
    TC::CStrategyStockData data;
    data.code = QString::fromLatin1(code);
    data.market = QStringLiteral("SH");
    const auto detail = utils::CManualSingletonT<TC::CExchangeClient>::instance()->getCodeInfo(
        QString::fromStdString(utils::vqStockKey("SH", code)));
    data.name = detail ? QString::fromStdString(detail->name) : QString();
    data.quantity = quantity;
    data.operation = operation;
    data.checked = checked;
    data.weight = weight;
    return data;
}

inline void writeBasket(const QString& name, const QList<TC::CStrategyStockData>& legs)
{
    TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
    TC::CStrategySetting basket;
    basket.name = name;
    for (const auto& data : legs) {
        basket.addLeg(data);
    }
    baskets.insert(name, basket);
    TC::CStrategyBaskets::write(baskets);
}

inline void settle()
{
    for (int i = 0; i < 3; ++i) {
        QApplication::processEvents();
    }
}

class StrategyTest : public boardtest::BoardTest {
protected:
    void TearDown() override
    {
        delete recorder;
        recorder = nullptr;
        BoardTest::TearDown();
    }
    widgettest::EventRecorder* recorder = new widgettest::EventRecorder;
};

}  // namespace strategytest
