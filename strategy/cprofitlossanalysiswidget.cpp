#include "strategy/cprofitlossanalysiswidget.h"

#include "toolkit/csimpletext.h"
#include "toolkit/cuiresource.h"

#include <QPainter>
#include <QStringList>

namespace TC {

namespace {

const QString kFontKey = QStringLiteral("fnt_default_large_fix");
constexpr int kLines = 7;
constexpr int kGap = 4;

}  // namespace

CProfitLossAnalysisWidget::CProfitLossAnalysisWidget(QWidget* parent)
    : WG::CBaseWidget(QStringLiteral("profitloss_analysis_widget"), false, parent)
{
    updateHeight();
}

CProfitLossAnalysisWidget::~CProfitLossAnalysisWidget() = default;

void CProfitLossAnalysisWidget::updateHeight()
{
    const int h = WG::CSimpleText::getSize(QStringLiteral(" "), kFontKey).height();
    setFixedHeight((h + kGap) * kLines);
}

void CProfitLossAnalysisWidget::themeChanged()
{
    // Another theme may bring another font, and with it another line height.
    updateHeight();
    update();
}

void CProfitLossAnalysisWidget::paintEvent(QPaintEvent*)
{
    WG::CUiResource* resources = WG::CUiResource::get();
    QPainter painter(this);
    painter.fillRect(rect(), *resources->getColor(QStringLiteral("clr_global_white")));
    painter.setPen(*resources->getColor(QStringLiteral("tc_clr_profitloss_analysis_test")));
    painter.setFont(*resources->getFont(kFontKey));
    const int h = WG::CSimpleText::getSize(QStringLiteral(" "), kFontKey).height();
    const QStringList lines = texts.lines();
    for (int n = 1; n <= lines.size(); ++n) {
        const QString& line = lines.at(n - 1);
        const int textWidth = WG::CSimpleText::getSize(line, kFontKey).width();
        painter.drawText((width() - textWidth) / 2, n * h + (n - 1) * kGap, line);
    }
}

}  // namespace TC
