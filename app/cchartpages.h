// The chart pages (the payoff chart and the ECharts file it draws with) are
// built into <build>/charts and installed into <prefix>/share/optdesk/charts.
// At start the desk copies them to <config-dir>/charts, beside the directory
// that TC::getConfigDir() names (<config-dir>/config), which is where the
// panels look for them: getConfigDir() + "/../charts/...".
#pragma once

#include <QString>
#include <QStringList>

namespace desk {

class CChartPages {
public:
    // Where this program's pages are: <bin>/../charts in a build tree, else
    // <bin>/../share/optdesk/charts in an install tree; empty when neither holds
    // the payoff page.
    static QString sourceDir();
    // The directory of the pages below a configuration directory.
    static QString targetDir(const QString& configDir);
    // The files a page folder needs to work: the page and the ECharts build.
    static QStringList requiredFiles();
    // Copies every page folder of sourceDir into <configDir>/charts, replacing
    // files that differ. False, with a reason, when a page or ECharts is missing
    // or a copy fails.
    static bool install(const QString& sourceDir, const QString& configDir, QString* error);
};

}  // namespace desk
