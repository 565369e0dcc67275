#include "seam/common.h"
#include "toolkit/cbasewidget.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QFile>

namespace {

class UiResourceTest : public testing::Test {
protected:
    void SetUp() override { utils::CSingletonT<WG::CUiResource>::destroy(); }
    void TearDown() override { utils::CSingletonT<WG::CUiResource>::destroy(); }
};

// The list of every key the panels ask for, shipped with the themes.
QList<QPair<QString, QString>> requiredKeys()
{
    WG::CUiResource::get();  // registers the toolkit's resources
    QList<QPair<QString, QString>> keys;
    QFile file(QStringLiteral(":/optdesk/themes/keys.txt"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return keys;
    }
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        const QStringList parts = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (parts.size() == 2) {
            keys << qMakePair(parts[0], parts[1]);
        }
    }
    return keys;
}

class Observer : public WG::CUiResourceChangeHandler {
public:
    void themeChanged() override { ++calls; }
    int calls = 0;
};

}  // namespace

TEST_F(UiResourceTest, BothThemesDefineEveryKeyTheLibraryAsksFor)
{
    WG::CUiResource* resource = WG::CUiResource::get();
    const auto keys = requiredKeys();
    ASSERT_GE(keys.size(), 44);
    for (const QString& theme : WG::CUiResource::themeNames()) {
        ASSERT_TRUE(resource->setTheme(theme));
        for (const auto& key : keys) {
            EXPECT_TRUE(resource->hasKey(key.first, key.second)) << theme.toStdString() << " " << key.second.toStdString();
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
