#include "app/deskapplication.h"

#include "app/cdesklayoutstore.h"
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "app/cmarketstatestore.h"
#include "app/deskoptions.h"
#include "app/desklogging.h"
#include "seam/logger.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace desk {

namespace {

void printError(const QString& text) { std::fprintf(stderr, "optdesk: %s\n", text.toLocal8Bit().constData()); }

// Qt aborts when the windowing system cannot be reached, so look before it tries.
bool hasDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (!platform.isEmpty() && !platform.startsWith("xcb") && !platform.startsWith("wayland")) {
        return true;  // offscreen, minimal, vnc, eglfs ... need no display server
    }
    if (platform.startsWith("wayland")) {
        return !qgetenv("WAYLAND_DISPLAY").isEmpty();
    }
    return !qgetenv("DISPLAY").isEmpty() || (platform.isEmpty() && !qgetenv("WAYLAND_DISPLAY").isEmpty());
}

}  // namespace

int runDesk(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    const DeskOptions options = parseDeskOptions(arguments);
    if (!options.ok) {
        printError(options.error);
        std::fprintf(stderr, "Try 'optdesk --help'.\n");
        return 2;
    }
    if (options.showHelp) {
        std::printf("%s", deskUsage().toLocal8Bit().constData());
        return 0;
    }
    if (options.showVersion) {
        std::printf("optdesk 0.1.0\n");
        return 0;
    }
    if (!hasDisplay()) {
        printError(QStringLiteral(
            "there is no display to open (DISPLAY is not set).\n"
            "  Run it offscreen:        QT_QPA_PLATFORM=offscreen optdesk --screenshot desk.png --quit-after 3\n"
            "  or on a virtual display: xvfb-run -a optdesk"));
        return 2;
    }
    QString error;
    if (!CDeskLayoutStore::ensureWritableDir(options.configDir, &error)) {
        printError(QStringLiteral("the configuration directory is not usable: %1").arg(error));
        return 2;
    }

    // The directory's market: its seed wins unless another was asked for, which
    // would put this ledger on a market it never traded.
    unsigned seed = static_cast<unsigned>(options.seed);
    MarketState market;
    const CMarketStateStore marketStore(options.configDir);
    switch (marketStore.load(market, &error)) {
    case CMarketStateStore::LoadResult::Damaged:
        printError(QStringLiteral("%1 已损坏（%2）。请修复或删除它，或用 --config-dir 指定一个新的目录。")
                       .arg(QDir::toNativeSeparators(marketStore.filePath()), error));
        return 2;
    case CMarketStateStore::LoadResult::Loaded:
        if (options.seedGiven && market.seed != seed) {
            printError(CMarketStateStore::seedMismatchText(options.configDir, market.seed, seed));
            return 2;
        }
        seed = market.seed;
        break;
    case CMarketStateStore::LoadResult::Missing:
        break;
    }

    // The chart page's browser (QtWebEngine) refuses to start as root inside its sandbox.
    if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX")) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("optdesk"));
    QFont font(QStringLiteral("Noto Sans CJK SC"));
    font.setPixelSize(12);
    QApplication::setFont(font);

    if (!startFileLogging(options.configDir, &error)) {
        printError(QStringLiteral("cannot open the log file: %1").arg(error));
        return 2;
    }
    NQ_LOG_INFO("optdesk starts, configuration in " + options.configDir.toStdString());

    int exitCode = 0;
    {
        DeskServicesConfig serviceConfig;
        serviceConfig.configDir = options.configDir;
        serviceConfig.seed = seed;
        serviceConfig.quoteRate = options.quoteRate;
        serviceConfig.clockSpeed = options.clockSpeed;
        serviceConfig.reachedDate = market.tradingDate;
        serviceConfig.greeksImportDir = options.greeksImportDir;
        CDeskServices services(serviceConfig);
        CDeskWindow window(CPanelFactory::withBuiltins(), options.configDir, options.tickMs);
        window.setHostTick([&services] { services.checkTradingDate(); });
        window.setMarketStatus([&services] { return services.statusText(); });
        window.setTradingHaltHandler([&services](bool halted) { services.setTradingHalted(halted); });
        window.setNextTradingDay([&services] { services.closeAndAdvance(); });
        window.restore(options.theme);
        if (!options.showPanel.isEmpty() && !window.showPanel(options.showPanel)) {
            printError(QStringLiteral("there is no panel \"%1\"; the panels are: %2")
                           .arg(options.showPanel, window.panelNames().join(QStringLiteral(", "))));
        }
        window.show();
        for (const QString& notice : window.notices()) {
            printError(notice);
        }
        if (options.quitAfterSeconds >= 0.0) {
            QTimer::singleShot(static_cast<int>(options.quitAfterSeconds * 1000.0), &window, [&] {
                if (!options.screenshotFile.isEmpty()) {
                    QString shotError;
                    if (!window.saveScreenshot(options.screenshotFile, &shotError)) {
                        printError(shotError);
                        exitCode = 1;
                    }
                }
                window.close();
                QApplication::quit();
            });
        }
        const int loopCode = QApplication::exec();
        if (exitCode == 0) {
            exitCode = loopCode;
        }
    }
    NQ_LOG_INFO("optdesk stops");
    stopFileLogging();
    return exitCode;
}

}  // namespace desk
