// The web view manager loads a page, reports the end of loading and runs
// scripts, holding back those sent before the page is ready. QtWebEngine needs
// a real display: run under xvfb-run with QT_QPA_PLATFORM=xcb.
#include "support/testsupport.h"

#include "seam/common.h"
#include "toolkit/ccefviewmanager.h"
#include "toolkit/ccefwebview.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QWidget>

namespace {

bool webEngineCanRun() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

TEST(CefViewManager, LoadsAPageReportsTheEndAndRunsScripts)
{
    if (!webEngineCanRun()) {
        GTEST_SKIP() << "QtWebEngine needs a display; run under xvfb-run with QT_QPA_PLATFORM=xcb";
    }
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString page = dir.filePath(QStringLiteral("index.html"));
    {
        QFile file(page);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<html><head><title>start</title><script>"
                   "function loadChart(text) { document.title = 'chart:' + text; }"
                   "</script></head><body></body></html>");
    }
    TC::CCefViewManager* manager = utils::CSingletonT<TC::CCefViewManager>::instance();
    ASSERT_NE(manager, nullptr);
    QWidget host;
    host.resize(300, 200);
    WG::CCefWebView* view = manager->getWebView(page, &host);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->parentWidget(), &host);
    host.show();

    int loads = 0;
    bool lastOk = false;
    manager->setloadFinished(view, [&](bool ok) {
        ++loads;
        lastOk = ok;
    });
    // Sent before the page is ready: held back, then run.
    manager->executeJavaScript(view, QStringLiteral("loadChart('{\"legs\":2}')"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return loads > 0; }, 20000));
    EXPECT_TRUE(lastOk);
    EXPECT_EQ(view->pendingScripts(), 0);
    EXPECT_TRUE(testsupport::waitUntil([&] { return view->title() == QStringLiteral("chart:{\"legs\":2}"); }, 5000))
        << view->title().toStdString();
    manager->executeJavaScript(view, QStringLiteral("loadChart('again')"));
    EXPECT_TRUE(testsupport::waitUntil([&] { return view->title() == QStringLiteral("chart:again"); }, 5000));
    utils::CSingletonT<TC::CCefViewManager>::destroy();
}

TEST(CefViewManager, MakesNoViewWhereNoBrowserCanRun)
{
    if (webEngineCanRun()) {
        GTEST_SKIP() << "a display is there: the browser can run";
    }
    TC::CCefViewManager manager;
    QWidget host;
    EXPECT_FALSE(TC::CCefViewManager::canCreateViews());
    EXPECT_EQ(manager.getWebView(QStringLiteral("/tmp/page.html"), &host), nullptr);
    EXPECT_EQ(manager.createdViews(), 0);
    // The other calls take the null view and do nothing.
    manager.setloadFinished(nullptr, [](bool) {});
    manager.executeJavaScript(nullptr, QStringLiteral("loadChart('{}')"));
}

}  // namespace
