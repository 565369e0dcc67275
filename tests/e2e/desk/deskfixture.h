// What the whole-desk tests start from: the desk's services on the simulated
// market of a fixed seed at ten of a fixed morning, in a configuration
// directory of the test's own, and a window the test may open on them.
#pragma once

#include "app/cdeskservices.h"
#include "app/cdeskwindow.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

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
