// What the whole-desk tests start from: the desk's services on the simulated
// market of a fixed seed at ten of a fixed morning, in a configuration
// directory of the test's own, and a window the test may open on them.
#pragma once

#include "app/ccombinationbuilddialog.h"
#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "support/testsupport.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QSpinBox>
#include <QTemporaryDir>

#include <cstdlib>
#include <string>

#include <memory>

namespace deskfixture {

inline desk::DeskServicesConfig config(const QString& dir)
{
    desk::DeskServicesConfig config;
    config.configDir = dir;
    config.seed = 11;
    config.quoteRate = 4.0;
    config.marketStart = QDateTime(QDate(2026, 11, 23), QTime(10, 0));
    return config;
}

// Fills "构建组合" as a trader would: both legs by their codes, the strategy and
// the volume. False when a leg is not among the held positions offered.
inline bool fillCombination(desk::CCombinationBuildDialog& dialog, const std::string& legOne,
                            const std::string& legTwo, const QString& strategy, int volume)
{
    const auto pick = [](QComboBox* box, const std::string& code) {
        for (int i = 0; i < box->count(); ++i) {
            if (box->itemText(i).contains(QString::fromStdString(code))) {
                box->setCurrentIndex(i);
                return true;
            }
        }
        return false;
    };
    if (!pick(dialog.legOneBox(), legOne) || !pick(dialog.legTwoBox(), legTwo)) {
        return false;
    }
    dialog.strategyBox()->setCurrentIndex(dialog.strategyBox()->findData(strategy));
    dialog.volumeBox()->setValue(volume);
    return true;
}

// On request (OPTDESK_KEEP_SCREENSHOTS names a directory) a picture of widget in
// both themes, as name-dark.png and name-light.png; the desk ends dark again.
inline void keepInBothThemes(desk::CDeskWindow& window, QWidget* widget, const QString& name)
{
    const char* dirName = std::getenv("OPTDESK_KEEP_SCREENSHOTS");
    if (dirName == nullptr) {
        return;
    }
    for (const QString& theme : {QStringLiteral("dark"), QStringLiteral("light")}) {
        window.applyTheme(theme);
        testsupport::waitUntil([] { return false; }, 300);
        widget->grab().save(QDir(QString::fromLocal8Bit(dirName)).filePath(name + QStringLiteral("-%1.png").arg(theme)));
    }
    window.applyTheme(QStringLiteral("dark"));
}

class DeskTest : public testing::Test {
protected:
    void SetUp() override
    {
        // Each desk resolves its theme afresh.
        utils::CSingletonT<WG::CUiResource>::destroy();
        services = std::make_unique<desk::CDeskServices>(config(dir.path()));
    }
    void TearDown() override
    {
        window.reset();
        services.reset();
        utils::CSingletonT<WG::CUiResource>::destroy();
    }

    QTemporaryDir dir;
    std::unique_ptr<desk::CDeskServices> services;
    std::unique_ptr<desk::CDeskWindow> window;
};

}  // namespace deskfixture
