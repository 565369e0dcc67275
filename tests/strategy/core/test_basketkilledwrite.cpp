// A workbench killed in the middle of writing its baskets leaves the last good set.
#include "seam/user.h"
#include "services/user/cusersettingsstore.h"
#include "strategy/cstrategybaskets.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <random>

TEST(BasketKilledWrite, AKilledWriterLeavesAWholeSetOfBaskets)
{
    QTemporaryDir dir;
    std::mt19937 random(20261124);
    std::uniform_int_distribution<int> pause(5, 120);
    for (int attempt = 0; attempt < 8; ++attempt) {
        QProcess writer;
        writer.start(QStringLiteral(BASKET_WRITER), {dir.path()});
        ASSERT_TRUE(writer.waitForStarted(10000));
        ASSERT_TRUE(writer.waitForReadyRead(20000)) << "the writer never saved";
        QThread::msleep(static_cast<unsigned long>(pause(random)));
        writer.kill();
        writer.waitForFinished(10000);

        auto* store = new TC::CUserSettingsStore(dir.path());
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(store);
        const TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
        ASSERT_EQ(baskets.size(), 40) << "attempt " << attempt;
        // One round throughout: every basket and leg of the same write.
        const QString round = baskets.firstKey().section(QLatin1Char('-'), 0, 0);
        for (auto it = baskets.constBegin(); it != baskets.constEnd(); ++it) {
            EXPECT_TRUE(it.key().startsWith(round + QLatin1Char('-'))) << it.key().toStdString();
            ASSERT_EQ(it->legs.size(), 8);
            EXPECT_EQ(QStringLiteral("r%1").arg(it->legs.at(7)->quantity), round);
        }
        EXPECT_TRUE(store->lastSetAsidePath().isEmpty()) << "attempt " << attempt << ": a damaged file was found";
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
    }
}
