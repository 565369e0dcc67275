#include "seam/uievents.h"
#include "toolkit/cbasewidget.h"
#include "toolkit/ceventwidgett.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct Received {
    int code;
    int id;
    int arg;
    QString text;
    void* data;
};

// A panel that knows one code and passes the rest to its base.
class RecordingPanel : public WG::CBaseWidget {
public:
    RecordingPanel() : WG::CBaseWidget(QStringLiteral("panel"), false, nullptr) {}
    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        if (code == WG::UE_BUTTON_CLICKED) {
            handled.push_back({code, id, arg, text, data});
            return true;
        }
        return WG::CBaseWidget::handleEvent(code, id, arg, text, data);
    }
    std::vector<Received> handled;
};

// The host above the panel: whatever the panel's base passes on arrives here.
class RecordingHost : public WG::CBaseWidget {
public:
    RecordingHost() : WG::CBaseWidget(QStringLiteral("host"), false, nullptr) {}
    bool handleEvent(int code, int id, int arg, QString text, void* data) override
    {
        passedOn.push_back({code, id, arg, text, data});
        return true;
    }
    std::vector<Received> passedOn;
};

class Control : public WG::CEventWidgetT<QWidget> {
public:
    using WG::CEventWidgetT<QWidget>::CEventWidgetT;
    bool report(int code, int id, int arg, const QString& text, void* data) { return deliverEvent(code, id, arg, text, data); }
};

}  // namespace

TEST(EventChannel, KnownCodeIsHandledByTheNearestDeliverer)
{
    RecordingHost host;
    auto* panel = new RecordingPanel;
    panel->setParent(&host);
    auto* inner = new QWidget(panel);  // a plain widget between control and panel
    auto* control = new Control(inner);
    EXPECT_TRUE(control->report(WG::UE_BUTTON_CLICKED, 12, 3, QStringLiteral("x"), nullptr));
    ASSERT_EQ(panel->handled.size(), 1u);
    EXPECT_EQ(panel->handled[0].id, 12);
    EXPECT_TRUE(host.passedOn.empty());
}

TEST(EventChannel, UnknownCodeReachesTheBaseWithAllFiveArgumentsUnchanged)
{
    RecordingHost host;
    auto* panel = new RecordingPanel;
    panel->setParent(&host);
    auto* control = new Control(panel);
    int payload = 7;
    EXPECT_TRUE(control->report(9999, -4, 2147483647, QStringLiteral("文本|;"), &payload));
    EXPECT_TRUE(panel->handled.empty());
    ASSERT_EQ(host.passedOn.size(), 1u);
    const Received& r = host.passedOn[0];
    EXPECT_EQ(r.code, 9999);
    EXPECT_EQ(r.id, -4);
    EXPECT_EQ(r.arg, 2147483647);
    EXPECT_EQ(r.text, QStringLiteral("文本|;"));
    EXPECT_EQ(r.data, &payload);
}

TEST(EventChannel, ExplicitParentDelivererWinsOverTheWidgetTree)
{
    RecordingHost treeParent;
    RecordingHost explicitParent;
    auto* control = new Control(&treeParent, &explicitParent);
    control->report(WG::UE_COMBO_CHANGED, 1, 0, QString(), nullptr);
    EXPECT_TRUE(treeParent.passedOn.empty());
    ASSERT_EQ(explicitParent.passedOn.size(), 1u);
    EXPECT_EQ(explicitParent.passedOn[0].code, WG::UE_COMBO_CHANGED);
}

TEST(EventChannel, NobodyAboveMeansUnhandled)
{
    Control lonely(nullptr);
    EXPECT_FALSE(lonely.report(WG::UE_BUTTON_CLICKED, 1, 0, QString(), nullptr));
}

TEST(EventChannel, CastFindsTheDelivererOfAWidget)
{
    RecordingHost host;
    QWidget plain;
    EXPECT_EQ(WG::castEventDeliverer(&host), static_cast<WG::CEventDeliverer*>(&host));
    EXPECT_EQ(WG::castEventDeliverer(&plain), nullptr);
    EXPECT_EQ(WG::castEventDeliverer(nullptr), nullptr);
}

TEST(EventChannel, CodesKeepTheirNumbers)
{
    EXPECT_EQ(WG::UE_BUTTON_CLICKED, 5);
    EXPECT_EQ(WG::UE_ACCOUNT_SELECTED, 7);
    EXPECT_EQ(WG::UE_TABLE_HSCROLL, 17);
    EXPECT_EQ(WG::UE_COLUMN_RESIZED, 21);
    EXPECT_EQ(WG::UE_CELL_PRIMARY, 47);
    EXPECT_EQ(WG::UE_CELL_ACTIVATED, 49);
    EXPECT_EQ(WG::UE_CELL_SECONDARY, 54);
    EXPECT_EQ(WG::UE_CHECK_CLICKED, 69);
    EXPECT_EQ(WG::UE_CHECK_TOGGLED, 70);
    EXPECT_EQ(WG::UE_COMBO_CHANGED, 73);
    EXPECT_EQ(WG::UE_VALUE_COMMITTED, 105);
    EXPECT_EQ(WG::UE_TEXT_CHANGED, 106);
    EXPECT_EQ(WG::UE_SPIN_CHANGED, 119);
    EXPECT_EQ(WG::UE_SPIN_VALUE_CHANGED, 123);
    EXPECT_EQ(WG::UE_TEXT_FILTER_CHANGED, 172);
    EXPECT_EQ(WG::UE_SET_PRICE_TYPE, 1128);
    EXPECT_EQ(WG::UE_SET_LIMIT_PRICE, 1129);
    EXPECT_EQ(WG::UE_SET_VOLUME_UNITS, 1130);
    EXPECT_EQ(WG::UE_ACCOUNTS_CHANGED, 1168);
}
