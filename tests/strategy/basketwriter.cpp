// Writes the baskets over and over through the workbench's own path, each round
// a whole new set, until it is killed: the victim of the killed-write test.
#include "seam/user.h"
#include "services/user/cusersettingsstore.h"
#include "strategy/cstrategybaskets.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: basket_writer CONFIG_DIR\n");
        return 2;
    }
    utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(
        new TC::CUserSettingsStore(QString::fromLocal8Bit(argv[1])));
    for (int round = 1;; ++round) {
        TC::TStrategyMap baskets;
        for (int i = 0; i < 40; ++i) {
            TC::CStrategySetting basket;
            basket.name = QStringLiteral("r%1-%2").arg(round).arg(i, 2, 10, QLatin1Char('0'));
            for (int leg = 0; leg < 8; ++leg) {
                TC::CStrategyStockData data;
                data.code = QStringLiteral("100000%1").arg(leg, 2, 10, QLatin1Char('0'));
                data.market = QStringLiteral("SH");
                data.name = QStringLiteral("50ETF购12月3000");
                data.quantity = round;
                basket.addLeg(data);
            }
            baskets.insert(basket.name, basket);
        }
        if (!TC::CStrategyBaskets::write(baskets)) {
            return 1;
        }
        if (round == 1) {
            std::printf("saved\n");
            std::fflush(stdout);
        }
    }
}
