#include "app/deskoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace desk {

namespace {

struct OptionSet {
    QCommandLineOption configDir{QStringLiteral("config-dir"), QStringLiteral("Directory of settings, layout and logs."),
                                 QStringLiteral("DIR")};
    QCommandLineOption seed{QStringLiteral("seed"), QStringLiteral("Seed of the simulated market."), QStringLiteral("N")};
    QCommandLineOption screenshot{QStringLiteral("screenshot"),
                                  QStringLiteral("Render the desk to this PNG file (with --quit-after)."),
                                  QStringLiteral("FILE")};
    QCommandLineOption quitAfter{QStringLiteral("quit-after"), QStringLiteral("Exit after this many seconds."),
                                 QStringLiteral("SECONDS")};
    QCommandLineOption quoteRate{QStringLiteral("quote-rate"),
                                 QStringLiteral("Quote snapshots per second per contract (default 2)."),
                                 QStringLiteral("N")};
    QCommandLineOption clockSpeed{QStringLiteral("clock-speed"),
                                  QStringLiteral("Run the market's clock this many times faster than the wall clock (default 1)."),
                                  QStringLiteral("N")};
    QCommandLineOption tickMs{QStringLiteral("tick-ms"), QStringLiteral("Panel refresh tick in milliseconds (default 250)."),
                              QStringLiteral("MS")};
    QCommandLineOption greeksDir{QStringLiteral("greeks-dir"), QStringLiteral("Directory of imported Greeks files."),
                                 QStringLiteral("DIR")};
    QCommandLineOption theme{QStringLiteral("theme"), QStringLiteral("Colour theme: dark or light."), QStringLiteral("NAME")};
    QCommandLineOption show{QStringLiteral("show"),
                            QStringLiteral("Bring this panel's dock to the front at start (pricet, pricet_future, ...)."),
                            QStringLiteral("PANEL")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
    QCommandLineOption version{QStringLiteral("version"), QStringLiteral("Show the version.")};

    void addTo(QCommandLineParser& parser) const
    {
        parser.addOptions({configDir, seed, screenshot, quitAfter, quoteRate, clockSpeed, tickMs, greeksDir, theme, show, help, version});
    }
};

DeskOptions failed(DeskOptions options, const QString& error)
{
    options.ok = false;
    options.error = error;
    return options;
}

}  // namespace

QString defaultConfigDir()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(base.isEmpty() ? QDir::homePath() + QStringLiteral("/.config") : base).filePath(QStringLiteral("optdesk"));
}

QString deskUsage()
{
    // The parser names the program after the application's first argument;
    // --help is answered before any application exists, and needs no display.
    if (QCoreApplication::instance() == nullptr) {
        int argc = 1;
        char name[] = "optdesk";
        char* argv[] = {name, nullptr};
        QCoreApplication naming(argc, argv);
        return deskUsage();
    }
    QCommandLineParser parser;
    OptionSet set;
    set.addTo(parser);
    parser.setApplicationDescription(QStringLiteral("optdesk: an options trading desk on a simulated Chinese market."));
    return parser.helpText();
}

DeskOptions parseDeskOptions(const QStringList& arguments)
{
    DeskOptions options;
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    OptionSet set;
    set.addTo(parser);
    if (!parser.parse(arguments)) {
        return failed(options, parser.errorText());
    }
    if (!parser.positionalArguments().isEmpty()) {
        return failed(options, QStringLiteral("Unexpected argument: %1").arg(parser.positionalArguments().first()));
    }
    options.showHelp = parser.isSet(set.help);
    options.showVersion = parser.isSet(set.version);
    options.configDir = parser.isSet(set.configDir) ? parser.value(set.configDir) : defaultConfigDir();
    if (options.configDir.isEmpty()) {
        return failed(options, QStringLiteral("--config-dir needs a directory."));
    }
    bool ok = true;
    if (parser.isSet(set.seed)) {
        options.seed = parser.value(set.seed).toULongLong(&ok);
        options.seedGiven = true;
        if (!ok || options.seed > 4294967295ULL) {
            return failed(options, QStringLiteral("--seed needs a whole number from 0 to 4294967295, not \"%1\".").arg(parser.value(set.seed)));
        }
    }
    if (parser.isSet(set.quitAfter)) {
        options.quitAfterSeconds = parser.value(set.quitAfter).toDouble(&ok);
        if (!ok || options.quitAfterSeconds < 0.0 || options.quitAfterSeconds > 86400.0 * 7) {
            return failed(options, QStringLiteral("--quit-after needs seconds between 0 and 604800, not \"%1\".").arg(parser.value(set.quitAfter)));
        }
    }
    if (parser.isSet(set.screenshot)) {
        options.screenshotFile = parser.value(set.screenshot);
        if (options.screenshotFile.isEmpty()) {
            return failed(options, QStringLiteral("--screenshot needs a file name."));
        }
        if (options.quitAfterSeconds < 0.0) {
            return failed(options, QStringLiteral("--screenshot goes with --quit-after SECONDS."));
        }
    }
    if (parser.isSet(set.quoteRate)) {
        options.quoteRate = parser.value(set.quoteRate).toDouble(&ok);
        if (!ok || options.quoteRate <= 0.0 || options.quoteRate > 1000.0) {
            return failed(options, QStringLiteral("--quote-rate needs a number above 0 and at most 1000, not \"%1\".").arg(parser.value(set.quoteRate)));
        }
    }
    if (parser.isSet(set.clockSpeed)) {
        options.clockSpeed = parser.value(set.clockSpeed).toDouble(&ok);
        if (!ok || options.clockSpeed <= 0.0 || options.clockSpeed > 100000.0) {
            return failed(options, QStringLiteral("--clock-speed needs a number above 0 and at most 100000, not \"%1\".").arg(parser.value(set.clockSpeed)));
        }
    }
    if (parser.isSet(set.tickMs)) {
        options.tickMs = parser.value(set.tickMs).toInt(&ok);
        if (!ok || options.tickMs < 20 || options.tickMs > 10000) {
            return failed(options, QStringLiteral("--tick-ms needs milliseconds between 20 and 10000, not \"%1\".").arg(parser.value(set.tickMs)));
        }
    }
    if (parser.isSet(set.greeksDir)) {
        options.greeksImportDir = parser.value(set.greeksDir);
    }
    if (parser.isSet(set.show)) {
        options.showPanel = parser.value(set.show);
    }
    if (parser.isSet(set.theme)) {
        options.theme = parser.value(set.theme);
        if (options.theme != QLatin1String("dark") && options.theme != QLatin1String("light")) {
            return failed(options, QStringLiteral("--theme is dark or light, not \"%1\".").arg(options.theme));
        }
    }
    return options;
}

}  // namespace desk
