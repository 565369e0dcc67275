// The analysis widget: its name, its seven starting lines, its height from the
// theme's large font, and that it paints its lines in the theme's colours.
#include "strategy/cprofitlossanalysiswidget.h"

#include "toolkit/csimpletext.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

TEST(ProfitLossAnalysisWidget, StartsWithItsSevenLinesAndHeight)
{
    TC::CProfitLossAnalysisWidget widget(nullptr);
    EXPECT_EQ(widget.objectName(), QStringLiteral("profitloss_analysis_widget"));
    EXPECT_EQ(widget.texts.lines(), (QStringList{"损益分析", "行权到期日:-", "最大盈利:-", "盈利区间:-", "最大亏损:-",
                                                 "亏损区间:-", "权利金净值:-"}));
    const int h = WG::CSimpleText::getSize(QStringLiteral(" "), QStringLiteral("fnt_default_large_fix")).height();
    EXPECT_EQ(widget.height(), (h + 4) * 7);
    EXPECT_EQ(widget.minimumHeight(), widget.maximumHeight());
}

TEST(ProfitLossAnalysisWidget, PaintsTheBackgroundKeyAndTheTextKey)
{
    TC::CProfitLossAnalysisWidget widget(nullptr);
    widget.resize(300, widget.height());
    const QImage image = widget.grab().toImage();
    const QColor background = *WG::CUiResource::get()->getColor(QStringLiteral("clr_global_white"));
    EXPECT_EQ(image.pixelColor(2, 2), background);
    // The title's row holds pixels of another colour: the text.
    int inked = 0;
    const int h = WG::CSimpleText::getSize(QStringLiteral(" "), QStringLiteral("fnt_default_large_fix")).height();
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < h; ++y) {
            inked += image.pixelColor(x, y) != background;
        }
    }
    EXPECT_GT(inked, 20);
    // Nothing is drawn at the left edge: the lines are centred.
    for (int y = 0; y < image.height(); ++y) {
        EXPECT_EQ(image.pixelColor(0, y), background) << y;
    }
}

}  // namespace
