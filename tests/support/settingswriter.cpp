// Saves the user settings over and over, each time with a new user name and a
// large history table, until it is killed: the victim of the killed-write test.
#include "services/user/cusersettingsstore.h"
#include "seam/userrecords.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: settings_writer CONFIG_DIR\n");
        return 2;
    }
    TC::CUserSettingsStore store(QString::fromLocal8Bit(argv[1]));
    for (int round = 1;; ++round) {
        store.setUserDataString(TC::UM_USER_NAME, QStringLiteral("writer-%1").arg(round));
        // A large file makes the write long enough to be cut in the middle.
        for (int i = 0; i < 200; ++i) {
            store.setHistoryRate(QStringLiteral("2026%1").arg(i, 4, 10, QLatin1Char('0')), QStringLiteral("510050.SH"),
                                 0.001 * (round % 1000) + i);
        }
        if (!store.save()) {
            return 1;
        }
        if (round == 1) {
            std::printf("saved\n");
            std::fflush(stdout);
        }
    }
}
