#include "seam/common.h"
#include "toolkit/cbasewidget.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

namespace {

class UiResourceTest : public testing::Test {
protected:
    void SetUp() override { utils::CSingletonT<WG::CUiResource>::destroy(); }
    void TearDown() override { utils::CSingletonT<WG::CUiResource>::destroy(); }
};

const char* const kColorKeys[] = {
    "clr_global_fall", "clr_global_rise", "clr_global_white", "clr_operation_frame_line_color",
    "clr_opselectcodewidget_color", "clr_order_operation_background", "clr_param_table_order_mode_active",
    "clr_param_table_order_mode_inactive", "clr_simple_text_disable", "clr_small_btn_critical_normal", "clr_tab_header",
    "clr_table_background", "clr_table_background_selected", "clr_table_number_background", "clr_table_split_line",
    "clr_text_default", "tc_clr_priceT_actual_value_background", "tc_clr_priceT_equal", "tc_clr_priceT_fall",
    "tc_clr_priceT_null_value_background", "tc_clr_priceT_number", "tc_clr_priceT_rise", "tc_clr_priceT_total",
    "tc_clr_pricet_exercise_price", "tc_clr_profitloss_analysis_test"};
const char* const kFontKeys[] = {"fnt_default_large_fix", "fnt_default_normal_fix", "fnt_default_normal_heavy_fix"};
const char* const kSizeKeys[] = {"siz_tool_bar_size", "tc_siz_account_btn_height", "tc_siz_account_btn_width_small",
                                 "tc_siz_code_quotes_height", "tc_siz_code_quotes_width"};
const char* const kImageKeys[] = {"img_btn_tab_group",      "tc_img_btn_add_basket",  "tc_img_btn_basket",
                                  "tc_img_btn_basket_del",  "tc_img_btn_close_basket", "tc_img_btn_order_mode",
                                  "tc_img_btn_red_small",   "tc_img_del_basket",      "tc_img_op_hedge_type_bg",
                                  "tc_img_tree_basket_icon"};

class Observer : public WG::CUiResourceChangeHandler {
public:
    void themeChanged() override { ++calls; }
    int calls = 0;
};

}  // namespace

TEST_F(UiResourceTest, BothThemesDefineEveryKeyTheLibraryAsksFor)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    for (const QString& theme : WG::CUiResource::themeNames()) {
        ASSERT_TRUE(resource->setTheme(theme));
        for (const char* key : kColorKeys) {
            EXPECT_TRUE(resource->hasKey(QStringLiteral("colors"), QString::fromLatin1(key))) << theme.toStdString() << " " << key;
        }
        for (const char* key : kFontKeys) {
            EXPECT_TRUE(resource->hasKey(QStringLiteral("fonts"), QString::fromLatin1(key))) << theme.toStdString() << " " << key;
        }
        for (const char* key : kSizeKeys) {
            EXPECT_TRUE(resource->hasKey(QStringLiteral("sizes"), QString::fromLatin1(key))) << theme.toStdString() << " " << key;
        }
        for (const char* key : kImageKeys) {
            EXPECT_TRUE(resource->hasKey(QStringLiteral("images"), QString::fromLatin1(key))) << theme.toStdString() << " " << key;
        }
    }
    EXPECT_TRUE(resource->unknownKeys().isEmpty());
}

TEST_F(UiResourceTest, ThemesDefineTheSameKeys)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    for (const char* kind : {"colors", "fonts", "sizes", "images"}) {
        resource->setTheme(QStringLiteral("dark"));
        const QStringList dark = resource->keys(QString::fromLatin1(kind));
        resource->setTheme(QStringLiteral("light"));
        EXPECT_EQ(dark, resource->keys(QString::fromLatin1(kind))) << kind;
    }
}

TEST_F(UiResourceTest, RiseIsRedAndFallIsGreen)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    for (const QString& theme : WG::CUiResource::themeNames()) {
        resource->setTheme(theme);
        const QColor rise = *resource->getColor(QStringLiteral("tc_clr_priceT_rise"));
        const QColor fall = *resource->getColor(QStringLiteral("tc_clr_priceT_fall"));
        EXPECT_GT(rise.red(), rise.green()) << theme.toStdString();
        EXPECT_GT(fall.green(), fall.red()) << theme.toStdString();
    }
}

TEST_F(UiResourceTest, UnknownKeyGivesAVisibleDefaultOnce)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    const QColor* color = resource->getColor(QStringLiteral("clr_no_such_key"));
    ASSERT_NE(color, nullptr);
    EXPECT_EQ(*color, WG::CUiResource::defaultColor());
    resource->getColor(QStringLiteral("clr_no_such_key"));
    EXPECT_EQ(resource->getSize(QStringLiteral("siz_no_such")), WG::CUiResource::defaultSize());
    EXPECT_NE(resource->getFont(QStringLiteral("fnt_no_such")), nullptr);
    EXPECT_FALSE(resource->getPixmap(QStringLiteral("img_no_such"))->isNull());
    EXPECT_EQ(resource->unknownKeys().size(), 4);
}

TEST_F(UiResourceTest, ThemeChangeGivesTheSameKeyAnotherColourAndNotifiesHandlers)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    ASSERT_EQ(resource->themeName(), QStringLiteral("dark"));
    const QColor dark = *resource->getColor(QStringLiteral("clr_table_background"));
    Observer observer;
    EXPECT_TRUE(resource->setTheme(QStringLiteral("light")));
    EXPECT_EQ(observer.calls, 1);
    EXPECT_NE(*resource->getColor(QStringLiteral("clr_table_background")), dark);
    EXPECT_FALSE(resource->setTheme(QStringLiteral("neon")));
    EXPECT_EQ(observer.calls, 1);
    EXPECT_EQ(resource->themeName(), QStringLiteral("light"));
}

TEST_F(UiResourceTest, ImagesLoadFromTheThemes)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    const QPixmap* pixmap = resource->getPixmap(QStringLiteral("tc_img_btn_red_small"));
    ASSERT_NE(pixmap, nullptr);
    EXPECT_GT(pixmap->width(), 0);
    EXPECT_TRUE(resource->unknownKeys().isEmpty());
}

TEST_F(UiResourceTest, BaseWidgetPaintsItsBackgroundFromTheCurrentTheme)
{
    WG::CBaseWidget widget(QStringLiteral("w"), true, nullptr);
    widget.resize(20, 20);
    WG::CUiResource* resource = WG::CUiResource::get();
    resource->setTheme(QStringLiteral("dark"));
    const QImage darkImage = widget.grab().toImage();
    EXPECT_EQ(QColor(darkImage.pixel(5, 5)), *resource->getColor(QStringLiteral("clr_table_background")));
    resource->setTheme(QStringLiteral("light"));
    const QImage lightImage = widget.grab().toImage();
    EXPECT_EQ(QColor(lightImage.pixel(5, 5)), *resource->getColor(QStringLiteral("clr_table_background")));
}
