// Reading the payoff chart page back in tests: a script's result, and what
// the page's chartState() says the chart holds.
#pragma once

#include "support/testsupport.h"
#include "toolkit/ccefwebview.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>
#include <QWebEnginePage>

#include <memory>
#include <utility>

namespace chartpage {

// Runs a script in the page and waits for its result.
inline QVariant runScript(WG::CCefWebView* view, const QString& script)
{
    auto result = std::make_shared<std::pair<bool, QVariant>>(false, QVariant());
    view->page()->runJavaScript(script, [result](const QVariant& value) {
        result->first = true;
        result->second = value;
    });
    testsupport::waitUntil([result] { return result->first; }, 10000);
    return result->second;
}

inline QJsonObject chartState(WG::CCefWebView* view)
{
    return QJsonDocument::fromJson(runScript(view, QStringLiteral("chartState()")).toString().toUtf8()).object();
}

}  // namespace chartpage
