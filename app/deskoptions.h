// The desk's command line, parsed without a display so that it can be tested.
#pragma once

#include <QString>
#include <QStringList>

namespace desk {

struct DeskOptions {
    QString configDir;           // where settings, layout and logs live
    unsigned long long seed = 20261122ULL;  // the simulated market's seed
    bool seedGiven = false;      // --seed was on the command line
    double clockSpeed = 1.0;     // the market's clock against the wall clock
    QString screenshotFile;      // render the window to this PNG, then exit
    double quitAfterSeconds = -1.0;  // exit after this many seconds (negative: run until closed)
    double quoteRate = 2.0;      // snapshots per second per contract
    int tickMs = 250;            // the panels' timer tick
    QString greeksImportDir;     // directory of imported Greeks files ("" keeps the saved setting)
    QString theme;               // "dark" or "light" ("" keeps the saved theme)
    QString showPanel;           // a panel whose dock comes to the front at start ("" none)
    bool showHelp = false;
    bool showVersion = false;

    bool ok = true;
    QString error;  // why parsing failed, for the user
};

// Parses arguments (the first is the program). Never exits and never throws.
DeskOptions parseDeskOptions(const QStringList& arguments);
// The usage text printed by --help.
QString deskUsage();
// The configuration directory used when none is given: ~/.config/optdesk.
QString defaultConfigDir();

}  // namespace desk
