#include "app/cchartpages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace desk {

namespace {

const char* const kPayoffFolder = "profitAndLossChart";

bool sameContent(const QString& a, const QString& b)
{
    QFileInfo infoA(a);
    QFileInfo infoB(b);
    if (!infoB.exists() || infoA.size() != infoB.size()) {
        return false;
    }
    QFile fileA(a);
    QFile fileB(b);
    if (!fileA.open(QIODevice::ReadOnly) || !fileB.open(QIODevice::ReadOnly)) {
        return false;
    }
    return fileA.readAll() == fileB.readAll();
}

bool hasPages(const QString& dir)
{
    for (const QString& file : CChartPages::requiredFiles()) {
        if (!QFileInfo::exists(QDir(dir).filePath(file))) {
            return false;
        }
    }
    return true;
}

}  // namespace

QString CChartPages::sourceDir()
{
    const QString bin = QCoreApplication::applicationDirPath();
    const QStringList candidates = {QDir(bin).filePath(QStringLiteral("../charts")),
                                    QDir(bin).filePath(QStringLiteral("../share/optdesk/charts"))};
    for (const QString& candidate : candidates) {
        if (hasPages(candidate)) {
            return QDir(candidate).absolutePath();
        }
    }
    return QString();
}

QString CChartPages::targetDir(const QString& configDir) { return QDir(configDir).filePath(QStringLiteral("charts")); }

QStringList CChartPages::requiredFiles()
{
    const QString folder = QLatin1String(kPayoffFolder);
    return {folder + QStringLiteral("/profitAndLossIndex.html"), folder + QStringLiteral("/echarts.min.js")};
}

bool CChartPages::install(const QString& sourceDir, const QString& configDir, QString* error)
{
    const auto fail = [error](const QString& text) {
        if (error != nullptr) {
            *error = text;
        }
        return false;
    };
    if (sourceDir.isEmpty() || !QFileInfo(sourceDir).isDir()) {
        return fail(QStringLiteral("no chart pages beside the program (build the target optdesk_charts)"));
    }
    for (const QString& file : requiredFiles()) {
        if (!QFileInfo::exists(QDir(sourceDir).filePath(file))) {
            return fail(QStringLiteral("%1 is missing in %2 (npm did not install ECharts?)").arg(file, sourceDir));
        }
    }
    // Only the page folders: a build tree's charts directory holds CMake's files too.
    const QDir target(targetDir(configDir));
    const QString folder = QLatin1String(kPayoffFolder);
    const QDir pages(QDir(sourceDir).filePath(folder));
    for (const QString& name : pages.entryList(QDir::Files)) {
        const QString from = pages.filePath(name);
        const QString to = target.filePath(folder + QLatin1Char('/') + name);
        if (sameContent(from, to)) {
            continue;
        }
        if (!QDir().mkpath(QFileInfo(to).absolutePath())) {
            return fail(QStringLiteral("cannot create %1").arg(QFileInfo(to).absolutePath()));
        }
        if (QFileInfo::exists(to) && !QFile::remove(to)) {
            return fail(QStringLiteral("cannot replace %1").arg(to));
        }
        if (!QFile::copy(from, to)) {
            return fail(QStringLiteral("cannot copy %1 to %2").arg(from, to));
        }
    }
    return true;
}

}  // namespace desk
