// Widgets paint with the theme of the moment: after a theme switch each family
// shows the new colours, an unknown key shows the visible default, and a
// gallery of all families renders in both themes without an unknown key.
#include "support/testsupport.h"
#include "widgettestsupport.h"

#include "seam/cpricedata.h"
#include "toolkit/widgets.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <QGridLayout>
#include <QLabel>
#include <QSet>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>
#include <functional>
#include <memory>
#include <vector>

using widgettest::colorDistance;
using widgettest::themeColor;

namespace {

class WidgetThemeTest : public ::testing::Test {
protected:
    void SetUp() override { WG::CUiResource::get()->setTheme(QStringLiteral("dark")); }
    void TearDown() override { WG::CUiResource::get()->setTheme(QStringLiteral("dark")); }
};

struct Probe {
    QString name;
    QWidget* widget;
    std::function<QPoint()> point;
    const char* key;
};

TEST_F(WidgetThemeTest, ThemeSwitchRepaintsEveryFamilyWithNoStaleColour)
{
    QWidget host;
    host.resize(400, 700);
    auto* layout = new QVBoxLayout(&host);

    auto* line = new WG::CFrameSplitterLine(QStringLiteral("clr_table_split_line"), &host);
    auto* group = new WG::CPushButtonGroup(Qt::Horizontal, 0, QStringLiteral("clr_tab_header"), &host);
    group->setFixedHeight(24);
    auto* safe = new WG::CSmallNormalButton(1, false, WG::NBT_SAFE, QStringLiteral("卖出"), &host);
    auto* combo = new WG::CComboBox(2, &host);
    combo->addItem(QStringLiteral("限价"));
    auto* edit = new WG::CLineEdit(3, &host);
    auto* search = new WG::CSearchTextLineEdit(&host, 4);
    auto* check = new WG::CCheckBox(5, QStringLiteral("自动"), &host);
    check->setChecked(true);
    auto* text = new WG::CSimpleTextWidget(false, 6, QStringLiteral("██████"), &host);
    auto* image = new WG::CPushButton(QString(), 7, 1, 1, 40, 20, 0, &host);
    image->setCheckable(true);
    image->setChecked(true);
    auto* bar = new WG::CAutoExpandToolBar("clr_toolbar_background", 2, 0, 2, 0, &host);
    auto* prices = new TC::CQuotesPricesList(TC::OPWID_QUICK_ORDER, &host);
    auto* graph = new TC::CQuotesGraphWidget(&host);
    graph->setFixedHeight(60);
    for (QWidget* widget : std::vector<QWidget*>{line, group, safe, combo, edit, search, check, text, image, bar, prices, graph}) {
        layout->addWidget(widget);
    }
    auto* dialog = new WG::CCommonDialog(&host);
    dialog->resize(200, 120);
    host.show();
    dialog->show();
    QApplication::processEvents();

    const std::vector<Probe> probes = {
        {"splitter line", line, [&] { return QPoint(line->width() / 2, 0); }, "clr_table_split_line"},
        {"button group", group, [] { return QPoint(5, 5); }, "clr_tab_header"},
        {"small button", safe, [&] { return QPoint(3, safe->height() / 2); }, "clr_small_btn_safe_normal"},
        {"combo box", combo, [&] { return QPoint(3, combo->height() / 2); }, "clr_edit_background"},
        {"line edit", edit, [&] { return QPoint(3, edit->height() / 2); }, "clr_edit_background"},
        {"search edit", search, [&] { return QPoint(search->width() - 6, 3); }, "clr_edit_background"},
        {"check box", check, [&] { return QPoint(4, (check->height() - 13) / 2 + 3); }, "clr_check_mark"},
        {"push button", image, [] { return QPoint(2, 2); }, "clr_button_checked"},
        {"tool bar", bar, [] { return QPoint(1, 1); }, "clr_toolbar_background"},
        {"price list", prices, [&] { return QPoint(1, prices->levelRect(0).center().y()); }, "clr_quotes_ask_background"},
        {"price list bid", prices, [&] { return QPoint(1, prices->levelRect(9).center().y()); }, "clr_quotes_bid_background"},
        {"graph", graph, [] { return QPoint(1, 1); }, "clr_table_background"},
        {"dialog", dialog, [&] { return QPoint(dialog->width() / 2, dialog->height() - 3); }, "clr_dialog_background"},
    };

    for (const char* theme : {"dark", "light", "dark"}) {
        ASSERT_TRUE(WG::CUiResource::get()->setTheme(QString::fromLatin1(theme)));
        QApplication::processEvents();
        for (const Probe& probe : probes) {
            const QImage picture = probe.widget->grab().toImage();
            const QColor seen = picture.pixelColor(probe.point());
            const QColor wanted = themeColor(probe.key);
            EXPECT_LE(colorDistance(seen, wanted), 6)
                << probe.name.toStdString() << " in theme " << theme << ": saw " << seen.name().toStdString()
                << ", key " << probe.key << " is " << wanted.name().toStdString();
        }
        EXPECT_EQ(search->lineEdit()->palette().color(QPalette::PlaceholderText), themeColor("clr_edit_placeholder"))
            << "the hint of the search field in theme " << theme;
        const QImage words = text->grab().toImage();
        EXPECT_TRUE(widgettest::areaHasColor(words, words.rect(), themeColor("clr_text_default"), 12))
            << "text colour in theme " << theme;
    }
}

TEST_F(WidgetThemeTest, ProbedKeysDifferBetweenThemes)
{
    // Otherwise the repaint test above could not tell a stale colour from a fresh one.
    for (const char* key : {"clr_table_split_line", "clr_tab_header", "clr_small_btn_safe_normal", "clr_edit_background",
                            "clr_check_mark", "clr_button_checked", "clr_toolbar_background", "clr_quotes_ask_background",
                            "clr_quotes_bid_background", "clr_table_background", "clr_dialog_background", "clr_text_default"}) {
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
        const QColor dark = themeColor(key);
        WG::CUiResource::get()->setTheme(QStringLiteral("light"));
        const QColor light = themeColor(key);
        EXPECT_GT(colorDistance(dark, light), 6) << key;
    }
}

TEST_F(WidgetThemeTest, UnknownKeyPaintsTheVisibleDefault)
{
    QWidget host;
    auto* line = new WG::CFrameSplitterLine(QStringLiteral("clr_widget_test_no_such_key"), &host);
    line->resize(40, 1);
    host.show();
    const QImage picture = line->grab().toImage();
    EXPECT_EQ(picture.pixelColor(20, 0), WG::CUiResource::defaultColor());
    EXPECT_TRUE(WG::CUiResource::get()->unknownKeys().contains(QStringLiteral("colors:clr_widget_test_no_such_key")));
}

TEST_F(WidgetThemeTest, RiseIsRedAndFallIsGreenInBothThemes)
{
    for (const char* theme : {"dark", "light"}) {
        WG::CUiResource::get()->setTheme(QString::fromLatin1(theme));
        const QColor rise = themeColor("tc_clr_priceT_rise");
        const QColor fall = themeColor("tc_clr_priceT_fall");
        EXPECT_GT(rise.red(), rise.green() + 80) << theme;
        EXPECT_GT(fall.green(), fall.red() + 80) << theme;
    }
}

TEST_F(WidgetThemeTest, StyleSheetsFollowTheTheme)
{
    for (const char* theme : {"dark", "light"}) {
        WG::CUiResource::get()->setTheme(QString::fromLatin1(theme));
        const QString background = themeColor("clr_edit_background").name(QColor::HexArgb);
        for (WG::SS_ControlType type : {WG::SS_COMBOBOX, WG::SS_LINEEDIT, WG::SS_SPINBOX, WG::SS_TEXTEDIT}) {
            const QString style = WG::CStyleSheetCenter::getStyle(type, nullptr);
            EXPECT_TRUE(style.contains(background)) << theme << " type " << int(type) << ": " << style.toStdString();
            EXPECT_TRUE(style.contains(QStringLiteral("Noto Sans CJK SC"))) << int(type);
        }
        EXPECT_TRUE(WG::CStyleSheetCenter::getStyle(WG::SS_COMBOBOX).contains(
            QStringLiteral(":/optdesk/images/%1/img_combo_arrow.svg").arg(QString::fromLatin1(theme))));
        WG::CStyleSheetOption option;
        option.backgroundKey = QStringLiteral("clr_global_rise");
        option.frame = false;
        const QString custom = WG::CStyleSheetCenter::getStyle(WG::SS_LINEEDIT, &option);
        EXPECT_TRUE(custom.contains(themeColor("clr_global_rise").name(QColor::HexArgb)));
        EXPECT_TRUE(custom.contains(QStringLiteral("border: 1px solid transparent")));
        for (WG::SS_ControlType type : {WG::SS_SCROLLBAR, WG::SS_MENU, WG::SS_TOOLTIP, WG::SS_DIALOG, WG::SS_TABWIDGET}) {
            EXPECT_FALSE(WG::CStyleSheetCenter::getStyle(type).isEmpty()) << int(type);
        }
    }
}

TEST_F(WidgetThemeTest, SimpleTextMeasuresInTheFontOfTheKey)
{
    const QSize one = WG::CSimpleText::getSize(QStringLiteral("认购"), QStringLiteral("fnt_default_normal_fix"));
    const QSize two = WG::CSimpleText::getSize(QStringLiteral("认购认购"), QStringLiteral("fnt_default_normal_fix"));
    const QSize large = WG::CSimpleText::getSize(QStringLiteral("认购"), QStringLiteral("fnt_default_large_fix"));
    EXPECT_GT(one.width(), 0);
    EXPECT_EQ(two.width(), 2 * one.width());
    EXPECT_GT(large.width(), one.width());
    EXPECT_GT(large.height(), one.height());
    EXPECT_EQ(WG::CSimpleText::getSize(QString(), QStringLiteral("fnt_default_normal_fix")).width(), 0);
}

// Renders a sample of every family; returns the window so the caller can grab it.
std::unique_ptr<QWidget> buildGallery()
{
    auto window = std::make_unique<WG::CEventWidgetT<QWidget>>();
    window->setAutoFillBackground(false);
    auto* grid = new QGridLayout(window.get());
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setSpacing(8);

    auto* bar = new WG::CAutoExpandToolBar("clr_toolbar_background", 6, 0, 6, 0, window.get());
    auto* tabs = new WG::CPushButtonGroup(Qt::Horizontal, 1, QStringLiteral("clr_tab_header"), bar);
    int tabId = 1;
    for (const QString& label : {QStringLiteral("T型报价"), QStringLiteral("指标"), QStringLiteral("风险")}) {
        auto* button = new WG::CPushButton(QString(), tabId, 1, 1, 64, 22, 0, nullptr);
        button->setText(label);
        tabs->addPushButton(button, tabId == 1);
        ++tabId;
    }
    bar->addToolItem(tabs);
    bar->addSeperator();
    auto* undl = new WG::CComboBox(10, bar);
    undl->addItems({QStringLiteral("50ETF 510050"), QStringLiteral("300ETF 510300")});
    undl->setFixedWidth(130);
    bar->addToolItem(undl);
    auto* month = new WG::CComboBox(11, bar);
    month->addItems({QStringLiteral("2612"), QStringLiteral("2701")});
    month->setFixedWidth(70);
    bar->addToolItem(month);
    auto* search = new WG::CSearchTextLineEdit(bar, 12);
    search->setEmptyTip(QStringLiteral("搜索合约"));
    search->setFixedWidth(120);
    bar->addToolItem(search, true);
    auto* basket = new WG::CPushButton(QStringLiteral("tc_img_btn_add_basket"), 13, 1, 1, 24, 22, 0, bar);
    bar->addToolItem(basket, true);
    grid->addWidget(bar, 0, 0, 1, 3);

    auto* form = new QWidget(window.get());
    auto* formLayout = new QVBoxLayout(form);
    formLayout->setContentsMargins(0, 0, 0, 0);
    auto* title = new WG::CSimpleTextWidget(false, 20, QStringLiteral("50ETF购12月2800"), form);
    title->setFontKey(QStringLiteral("fnt_default_large_fix"));
    formLayout->addWidget(title);
    auto* price = new WG::CLineEdit(21, form);
    price->setText(QStringLiteral("0.1234"));
    formLayout->addWidget(price);
    auto* wrong = new WG::CLineEdit(22, form);
    wrong->setText(QStringLiteral("abc"));
    wrong->setInvalid(true);
    formLayout->addWidget(wrong);
    auto* radios = new WG::CRadioButtonGroup(form);
    radios->addButton(QStringLiteral("开仓"), 1, true);
    radios->addButton(QStringLiteral("平仓"), 2, false);
    radios->addButton(QStringLiteral("备兑"), 3, false, false);
    formLayout->addWidget(radios);
    auto* checks = new QWidget(form);
    auto* checkRow = new QHBoxLayout(checks);
    checkRow->setContentsMargins(0, 0, 0, 0);
    auto* on = new WG::CCheckBox(23, QStringLiteral("拆单"), checks);
    on->setChecked(true);
    checkRow->addWidget(on);
    checkRow->addWidget(new WG::CCheckBox(24, QStringLiteral("市价"), checks));
    auto* off = new WG::CCheckBox(25, QStringLiteral("禁用"), checks);
    off->setEnabled(false);
    checkRow->addWidget(off);
    checkRow->addStretch(1);
    formLayout->addWidget(checks);
    formLayout->addWidget(new WG::CFrameSplitterLine(QStringLiteral("clr_table_split_line"), form));
    auto* buttons = new QWidget(form);
    auto* buttonRow = new QHBoxLayout(buttons);
    buttonRow->setContentsMargins(0, 0, 0, 0);
    buttonRow->addWidget(new WG::CSmallNormalButton(30, false, WG::NBT_CRITICAL, QStringLiteral("买入"), buttons));
    buttonRow->addWidget(new WG::CSmallNormalButton(31, false, WG::NBT_SAFE, QStringLiteral("卖出"), buttons));
    buttonRow->addWidget(new WG::CSmallNormalButton(32, false, WG::NBT_NORMAL, QStringLiteral("取消"), buttons));
    buttonRow->addWidget(new WG::CSmallNoNormalButton(33, false, WG::NBT_PRIMARY, QStringLiteral("重置"), buttons));
    auto* rest = new TC::CAutoButton(34, false, WG::NBT_PRIMARY, buttons, 500);
    rest->setText(QStringLiteral("一键下单"));
    buttonRow->addWidget(rest);
    formLayout->addWidget(buttons);
    auto* images = new QWidget(form);
    auto* imageRow = new QHBoxLayout(images);
    imageRow->setContentsMargins(0, 0, 0, 0);
    for (const char* key : {"tc_img_btn_basket", "tc_img_btn_basket_del", "tc_img_btn_close_basket", "tc_img_btn_order_mode",
                            "tc_img_btn_red_small", "tc_img_tree_basket_icon"}) {
        auto* picture = new WG::CImageWidget(40, QString::fromLatin1(key), images);
        picture->setFixedSize(32, 22);
        imageRow->addWidget(picture);
    }
    imageRow->addStretch(1);
    formLayout->addWidget(images);
    formLayout->addStretch(1);
    grid->addWidget(form, 1, 0);

    auto* prices = new TC::CQuotesPricesList(TC::OPWID_QUICK_ORDER, window.get());
    prices->setShowCancelOrder(true);
    prices->setStockCode(QStringLiteral("10009999.SH"));
    auto quote = boost::shared_ptr<TC::CPriceData>(new TC::CPriceData());
    quote->market = "SH";
    quote->code = "10009999";
    quote->preClose = 0.1500;
    quote->lastPrice = 0.1530;
    const double asks[5] = {0.1531, 0.1532, 0.1535, 0.1500, 0.1540};
    const double bids[5] = {0.1529, 0.1520, 0.1500, 0.1490, 0.1485};
    for (int level = 1; level <= 5; ++level) {
        quote->setAsk(level, asks[level - 1], 10 * level + 3);
        quote->setBid(level, bids[level - 1], 20 * level + 7);
    }
    prices->parsePrice(quote);
    prices->setFixedWidth(200);
    grid->addWidget(prices, 1, 1);

    auto* graph = new TC::CQuotesGraphWidget(window.get());
    graph->setStockCode(QStringLiteral("10009999.SH"));
    for (int minute = 0; minute < 120; ++minute) {
        auto point = boost::shared_ptr<TC::CPriceData>(new TC::CPriceData(*quote));
        point->lastPrice = 0.15 + 0.004 * std::sin(minute / 9.0) + minute * 0.00002;
        point->time = 1700000000000LL + minute * 60000LL;
        graph->parsePrice(point);
    }
    graph->setFixedSize(220, 140);
    grid->addWidget(graph, 1, 2, Qt::AlignTop);
    window->resize(720, 330);
    return window;
}


TEST_F(WidgetThemeTest, GalleryRendersInBothThemesWithEveryKeyDefined)
{
    const QFontInfo font(*WG::CUiResource::get()->getFont(QStringLiteral("fnt_default_normal_fix")));
    EXPECT_EQ(font.family(), QStringLiteral("Noto Sans CJK SC"));

    const QSet<QString> before = WG::CUiResource::get()->unknownKeys().toSet();
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/gallery");
    QDir().mkpath(folder);
    for (const char* theme : {"dark", "light"}) {
        WG::CUiResource::get()->setTheme(QString::fromLatin1(theme));
        std::unique_ptr<QWidget> window = buildGallery();
        QPalette palette = window->palette();
        palette.setColor(QPalette::Window, themeColor("clr_window_background"));
        window->setPalette(palette);
        window->setAutoFillBackground(true);
        window->show();
        QApplication::processEvents();
        const QImage picture = window->grab().toImage();
        const QString path = folder + QStringLiteral("/widgets_%1.png").arg(QString::fromLatin1(theme));
        EXPECT_TRUE(picture.save(path)) << path.toStdString();
        EXPECT_FALSE(widgettest::areaHasColor(picture, picture.rect(), WG::CUiResource::defaultColor(), 0))
            << "the visible default of an unknown key shows in theme " << theme;

        WG::CCommonDialog dialog(window.get());
        dialog.setTitle(QStringLiteral("下单设置"));
        auto* inner = new QWidget();
        auto* innerLayout = new QVBoxLayout(inner);
        innerLayout->addWidget(new WG::CCheckBox(1, QStringLiteral("下单前确认"), inner));
        auto* volume = new WG::CLineEdit(2, inner);
        volume->setPlaceholderText(QStringLiteral("默认数量"));
        innerLayout->addWidget(volume);
        dialog.setInnerWidget(inner);
        dialog.resize(260, 130);
        dialog.show();
        QApplication::processEvents();
        EXPECT_TRUE(dialog.grab().save(folder + QStringLiteral("/commondialog_%1.png").arg(QString::fromLatin1(theme))));
        dialog.hide();

        WG::CMessageTip::showTip(volume, 0x40, QStringLiteral("可用数量不足，最多可开 12 张"), 3, 300);
        QWidget* tip = nullptr;
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->windowFlags().testFlag(Qt::ToolTip)) {
                tip = top;
            }
        }
        ASSERT_NE(tip, nullptr);
        EXPECT_TRUE(tip->grab().save(folder + QStringLiteral("/tip_%1.png").arg(QString::fromLatin1(theme))));
        WG::CMessageTip::hideTip();

        // The message box, grabbed while it is up and then answered.
        QTimer::singleShot(0, [folder, theme]() {
            testsupport::waitUntil([] { return QApplication::activeModalWidget() != nullptr; }, 3000);
            if (QWidget* box = QApplication::activeModalWidget()) {
                box->grab().save(folder + QStringLiteral("/messagebox_%1.png").arg(QString::fromLatin1(theme)));
                QTest::keyClick(box, Qt::Key_Escape);
            }
        });
        WG::CMessageBox::question(nullptr, window.get(), QStringLiteral("提示"),
                                  QStringLiteral("委托数量超过单笔上限，是否拆分为多笔委托？"),
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, true, false);
    }
    QSet<QString> added = WG::CUiResource::get()->unknownKeys().toSet() - before;
    EXPECT_TRUE(added.isEmpty()) << "keys asked for but defined by no theme: "
                                 << QStringList(added.values()).join(QLatin1Char(' ')).toStdString();
}

}  // namespace
