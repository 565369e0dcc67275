// The small painted text panel under the winner table: the profit and loss
// analysis of the chosen candidate in seven centred lines. It holds texts
// only; the winner widget composes them and calls update().
#pragma once

#include "strategy/cprofitlossanalysistexts.h"
#include "toolkit/cbasewidget.h"

namespace TC {

class CProfitLossAnalysisWidget : public WG::CBaseWidget {
    Q_OBJECT
public:
    explicit CProfitLossAnalysisWidget(QWidget* parent);
    ~CProfitLossAnalysisWidget() override;

    // The seven lines in painting order: title, expiry, maximum profit, profit
    // range, maximum loss, loss range, net premium.
    CProfitLossAnalysisTexts texts;

    void themeChanged() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void updateHeight();
};

}  // namespace TC
