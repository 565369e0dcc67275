// The cell text painter lays numbers out without shaping; what it draws must be
// what QPainter::drawText draws for the elided text, pixel for pixel, in the
// themes' table fonts and a plain one, in every alignment, for room to spare and
// room too small.
#include "support/testsupport.h"
#include "toolkit/ctextlinepainter.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <string>
#include <vector>

namespace {

const QStringList& numberTexts()
{
    static const QStringList texts = {
        QStringLiteral("0"),          QStringLiteral("3.0125"),    QStringLiteral("-0.0450"),
        QStringLiteral("+12.34%"),    QStringLiteral("1,234,567"), QStringLiteral("10004567"),
        QStringLiteral("(2.5)"),      QStringLiteral("09:30:00"),  QStringLiteral("2026/11/22"),
        QStringLiteral("-1,000.00%"), QStringLiteral("7"),         QStringLiteral("1111111111111111111111"),
        QStringLiteral("7.7,1-1:4"),  QStringLiteral("(1)/(7)"),
    };
    return texts;
}

std::vector<QFont> fonts()
{
    const WG::CUiResource* resource = WG::CUiResource::get();
    QFont plain(QStringLiteral("Noto Sans CJK SC"));
    plain.setPixelSize(15);
    // Latin faces kern more pairs of figures and signs than the CJK face.
    QFont serif(QStringLiteral("DejaVu Serif"));
    serif.setPixelSize(13);
    QFont sans(QStringLiteral("DejaVu Sans"));
    sans.setPointSizeF(11.5);
    return {*resource->getFont(QStringLiteral("fnt_default_normal_fix")),
            *resource->getFont(QStringLiteral("fnt_default_normal_heavy_fix")), plain, serif, sans};
}

QImage blank(const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(20, 24, 30));
    return image;
}

// What the table drew before: Qt's eliding and Qt's text drawing.
QImage drawnByQt(const QSize& size, const QRect& rect, int alignment, const QString& text, const QFont& font)
{
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setPen(QColor(230, 60, 60));
    painter.setFont(font);
    painter.drawText(rect, alignment, QFontMetrics(font).elidedText(text, Qt::ElideRight, rect.width()));
    return image;
}

QImage drawnByPainter(const QSize& size, const QRect& rect, int alignment, const QString& text, const QFont& font)
{
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setPen(QColor(230, 60, 60));
    WG::CTextLinePainter::draw(&painter, rect, alignment, text, font);
    return image;
}

std::string describe(const QString& text, const QFont& font, const QRect& rect, int alignment)
{
    return "text \"" + text.toStdString() + "\" font " + font.toString().toStdString() + " rect " +
           std::to_string(rect.x()) + "," + std::to_string(rect.y()) + " " + std::to_string(rect.width()) + "x" +
           std::to_string(rect.height()) + " alignment " + std::to_string(alignment);
}

TEST(TextLinePainter, NumbersAreLaidOutWithoutShapingInTheTableFonts)
{
    for (const QFont& font : fonts()) {
        for (const QString& text : numberTexts()) {
            EXPECT_TRUE(WG::CTextLinePainter::laysOutDirectly(text, font)) << text.toStdString();
        }
    }
}

TEST(TextLinePainter, OtherTextsGoToQt)
{
    const QFont font = fonts().front();
    for (const QString& text : {QStringLiteral("50ETF购12月2800"), QStringLiteral("510050.SH"), QStringLiteral("1 000"),
                                QStringLiteral("买"), QString(), QStringLiteral("1\u20262")}) {
        EXPECT_FALSE(WG::CTextLinePainter::laysOutDirectly(text, font)) << text.toStdString();
    }
    QFont underlined = font;
    underlined.setUnderline(true);
    EXPECT_FALSE(WG::CTextLinePainter::laysOutDirectly(QStringLiteral("3.0125"), underlined));
}

TEST(TextLinePainter, ElidesAsQtElides)
{
    for (const QFont& font : fonts()) {
        const QFontMetrics metrics(font);
        for (const QString& text : numberTexts()) {
            for (int width = 0; width <= metrics.horizontalAdvance(text) + 4; ++width) {
                EXPECT_EQ(WG::CTextLinePainter::shownText(text, font, width),
                          metrics.elidedText(text, Qt::ElideRight, width))
                    << describe(text, font, QRect(0, 0, width, 0), 0);
            }
        }
    }
}

TEST(TextLinePainter, DrawsThePixelsQtDraws)
{
    const QSize canvas(140, 40);
    const int alignments[] = {Qt::AlignLeft | Qt::AlignVCenter, Qt::AlignRight | Qt::AlignVCenter,
                              Qt::AlignHCenter | Qt::AlignVCenter, Qt::AlignLeft | Qt::AlignTop,
                              Qt::AlignRight | Qt::AlignBottom};
    int compared = 0;
    for (const QFont& font : fonts()) {
        const QFontMetrics metrics(font);
        for (const QString& text : numberTexts()) {
            const int natural = metrics.horizontalAdvance(text);
            // Room to spare, exactly enough, a little short, far too short; rows
            // taller and shorter than the line.
            for (const int width : {natural + 9, natural + 1, natural, natural - 3, natural / 2, 6}) {
                for (const int height : {24, 21, 18, metrics.height() - 2}) {
                    for (const int alignment : alignments) {
                        const QRect rect(7, 5, qBound(1, width, 120), height);
                        const QImage expected = drawnByQt(canvas, rect, alignment, text, font);
                        const QImage actual = drawnByPainter(canvas, rect, alignment, text, font);
                        ASSERT_TRUE(actual == expected) << describe(text, font, rect, alignment);
                        if (width >= natural) {
                            ASSERT_FALSE(expected == blank(canvas)) << "nothing drawn: " << describe(text, font, rect, alignment);
                        }
                        ++compared;
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 2000);
}

TEST(TextLinePainter, NamesAndLabelsDrawThePixelsQtDraws)
{
    const QSize canvas(200, 40);
    const QStringList texts = {QStringLiteral("50ETF购12月2800"), QStringLiteral("510050.SH"), QStringLiteral("买"),
                               QStringLiteral("开 平"), QStringLiteral("沪深300ETF沽2026年3月4500A"),
                               QStringLiteral("Ab, fi fl"), QStringLiteral("两行\n文字"), QStringLiteral("制表\t符"),
                               QStringLiteral("开"), QStringLiteral("平"), QStringLiteral("全撤"),
                               QStringLiteral("IO2612-C-4500"), QStringLiteral("m2609-P-2800 豆粕"),
                               QStringLiteral(" 买入"), QStringLiteral("卖出  ")};
    const int alignments[] = {Qt::AlignLeft | Qt::AlignVCenter, Qt::AlignLeft | Qt::AlignTop,
                              Qt::AlignRight | Qt::AlignVCenter, Qt::AlignCenter};
    for (const QFont& font : fonts()) {
        const QFontMetrics metrics(font);
        for (const QString& text : texts) {
            const int natural = metrics.horizontalAdvance(text);
            for (const int width : {natural + 6, natural + 3, natural + 1, natural, natural - 5, natural / 3, 24, 3}) {
                for (const int height : {22, 21, metrics.height() - 3}) {
                    for (const int alignment : alignments) {
                        const QRect rect(5 + width % 2, 4, qBound(1, width, 190), height);
                        // Twice: the second draw comes from the kept shaping.
                        for (int pass = 0; pass < 2; ++pass) {
                            ASSERT_TRUE(drawnByPainter(canvas, rect, alignment, text, font) ==
                                        drawnByQt(canvas, rect, alignment, text, font))
                                << describe(text, font, rect, alignment) << " pass " << pass;
                        }
                    }
                }
            }
        }
    }
}

}  // namespace
