// Every control reports through the event channel with its id and the right
// code and argument; groups keep one member checked.
#include "support/testsupport.h"
#include "widgettestsupport.h"

#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/widgets.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QPointer>
#include <QSplitter>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

using widgettest::EventRecorder;

namespace {

class WidgetEventsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
        recorder = new EventRecorder();
        recorder->show();
    }
    void TearDown() override { delete recorder; }

    EventRecorder* recorder = nullptr;
};

TEST_F(WidgetEventsTest, PushButtonClickDeliversItsId)
{
    auto* button = new WG::CPushButton(QStringLiteral("tc_img_btn_order_mode"), 11, 1, 1, 60, 24, 4, recorder);
    button->setText(QStringLiteral("下单"));
    button->show();
    QSignalSpy spy(button, &WG::CPushButton::sigClicked);
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].code, WG::UE_BUTTON_CLICKED);
    EXPECT_EQ(recorder->events[0].id, 11);
    EXPECT_EQ(spy.count(), 1);
    button->setEnabled(false);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(recorder->events.size(), 1) << "a disabled button reports nothing";
}

TEST_F(WidgetEventsTest, PushButtonTextColourKeyFollowsState)
{
    auto* button = new WG::CPushButton(QString(), 3, 1, 1, 60, 24, 4, recorder);
    button->setText(QStringLiteral("报价"));
    button->setTextColorKey(QStringLiteral("k_normal"), QStringLiteral("k_hover"), QStringLiteral("k_active"),
                            QStringLiteral("k_disabled"));
    button->show();
    EXPECT_EQ(button->currentTextColorKey(), QStringLiteral("k_normal"));
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(button, &enter);
    EXPECT_EQ(button->currentTextColorKey(), QStringLiteral("k_hover"));
    EXPECT_EQ(button->cursor().shape(), Qt::PointingHandCursor) << "a hand points at what can be clicked";
    button->setCheckable(true);
    button->setChecked(true);
    EXPECT_EQ(button->currentTextColorKey(), QStringLiteral("k_active"));
    button->setEnabled(false);
    EXPECT_EQ(button->currentTextColorKey(), QStringLiteral("k_disabled"));
}

TEST_F(WidgetEventsTest, PushButtonTellsAssistiveTechnologyItsNameStateAndPress)
{
    auto* button = new WG::CPushButton(QString(), 21, 1, 1, 60, 24, 4, recorder);
    button->setText(QStringLiteral("买&开"));
    button->show();
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(button);
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->role(), QAccessible::Button);
    EXPECT_EQ(iface->text(QAccessible::Name), QStringLiteral("买开")) << "the mnemonic mark is not read out";
    EXPECT_FALSE(iface->state().checked);
    QAccessibleActionInterface* actions = iface->actionInterface();
    ASSERT_NE(actions, nullptr);
    ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_EQ(recorder->events.size(), 1) << "pressing it through accessibility clicks it";
    EXPECT_EQ(recorder->events[0].code, WG::UE_BUTTON_CLICKED);
    EXPECT_EQ(recorder->events[0].id, 21);

    button->setCheckable(true);
    button->setChecked(true);
    EXPECT_EQ(iface->role(), QAccessible::CheckBox);
    EXPECT_TRUE(iface->state().checkable);
    EXPECT_TRUE(iface->state().checked);
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::toggleAction()));

    button->setEnabled(false);
    EXPECT_FALSE(actions->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(recorder->events.size(), 1) << "a disabled button is not pressed";
}

TEST_F(WidgetEventsTest, PushButtonKeepsACursorItsOwnerSet)
{
    auto* button = new WG::CPushButton(QString(), 4, 1, 1, 60, 24, 4, recorder);
    button->setCursor(Qt::CrossCursor);
    button->show();
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(button, &enter);
    EXPECT_EQ(button->cursor().shape(), Qt::CrossCursor);
    EXPECT_EQ(button->size(), QSize(60, 24));
    EXPECT_EQ(button->minimumSize(), button->maximumSize()) << "a fixed size";
}

TEST_F(WidgetEventsTest, PushButtonGroupIsExclusive)
{
    auto* group = new WG::CPushButtonGroup(Qt::Horizontal, 2, QStringLiteral("clr_tab_header"), recorder);
    for (int id = 1; id <= 3; ++id) {
        auto* button = new WG::CPushButton(QString(), id, 1, 1, 50, 22, 0, nullptr);
        button->setText(QStringLiteral("第%1页").arg(id));
        group->addPushButton(button, id == 1);
    }
    group->show();
    EXPECT_EQ(group->checkedButton(), 1);
    QTest::mouseClick(group->button(2), Qt::LeftButton);
    EXPECT_EQ(group->checkedButton(), 2);
    EXPECT_FALSE(group->button(1)->isChecked());
    EXPECT_FALSE(group->button(3)->isChecked());
    ASSERT_EQ(recorder->ofCode(WG::UE_BUTTON_CLICKED).size(), 1);
    EXPECT_EQ(recorder->ofCode(WG::UE_BUTTON_CLICKED)[0].id, 2);
    group->setCheckedByID(3);
    EXPECT_EQ(group->checkedButton(), 3);
    EXPECT_FALSE(group->button(2)->isChecked());
    // A second click on the checked member keeps it checked.
    QTest::mouseClick(group->button(3), Qt::LeftButton);
    EXPECT_EQ(group->checkedButton(), 3);
    group->setCheckedByID(42);
    EXPECT_EQ(group->checkedButton(), 3) << "an unknown id changes nothing";
}

TEST_F(WidgetEventsTest, SmallButtonsDeliverClicks)
{
    auto* normal = new WG::CSmallNormalButton(21, false, WG::NBT_CRITICAL, QStringLiteral("买入"), recorder);
    auto* flat = new WG::CSmallNoNormalButton(22, true, WG::NBT_SAFE, QStringLiteral("卖出"), recorder);
    flat->move(0, 40);
    normal->show();
    flat->show();
    QTest::mouseClick(normal, Qt::LeftButton);
    QTest::mouseClick(flat, Qt::LeftButton);
    const auto clicks = recorder->ofCode(WG::UE_BUTTON_CLICKED);
    ASSERT_EQ(clicks.size(), 2);
    EXPECT_EQ(clicks[0].id, 21);
    EXPECT_EQ(clicks[0].arg, 0);
    EXPECT_EQ(clicks[1].id, 22);
    EXPECT_EQ(clicks[1].arg, 1) << "a checkable button reports its new state";
    EXPECT_EQ(normal->currentBackgroundKey(), QStringLiteral("clr_small_btn_critical_normal"));
}

TEST_F(WidgetEventsTest, AutoButtonRestsAfterAClick)
{
    auto* button = new TC::CAutoButton(31, false, WG::NBT_PRIMARY, recorder, 200);
    button->setText(QStringLiteral("一键下单"));
    button->show();
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseClick(button, Qt::LeftButton);
    button->slotClicked(false);
    EXPECT_EQ(recorder->ofCode(WG::UE_BUTTON_CLICKED).size(), 1);
    EXPECT_TRUE(button->isResting());
    EXPECT_FALSE(button->isEnabled());
    ASSERT_TRUE(testsupport::waitUntil([&] { return button->isEnabled(); }, 2000));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(recorder->ofCode(WG::UE_BUTTON_CLICKED).size(), 2);
}

TEST_F(WidgetEventsTest, SimpleTextWidgetClicksOnlyWhenClickable)
{
    auto* clickable = new WG::CSimpleTextWidget(true, 41, QStringLiteral("50ETF"), recorder);
    auto* plain = new WG::CSimpleTextWidget(false, 42, QStringLiteral("300ETF"), recorder);
    plain->move(0, 30);
    clickable->show();
    plain->show();
    QTest::mouseClick(clickable, Qt::LeftButton);
    QTest::mouseClick(plain, Qt::LeftButton);
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].id, 41);
    EXPECT_EQ(clickable->getText(), QStringLiteral("50ETF"));

    plain->setText(QStringLiteral("华夏上证50交易型开放式指数证券投资基金"), 60);
    EXPECT_EQ(plain->width(), 60);
    EXPECT_EQ(plain->getText(), QStringLiteral("华夏上证50交易型开放式指数证券投资基金"));
    EXPECT_NE(plain->shownText(), plain->getText()) << "a long text is elided to the width";
    plain->setEnabled(false);
    EXPECT_EQ(plain->currentColorKey(), QStringLiteral("clr_simple_text_disable"));
}

TEST_F(WidgetEventsTest, ComboBoxDeliversIndexChanges)
{
    auto* combo = new WG::CComboBox(51, recorder);
    combo->addItems({QStringLiteral("限价"), QStringLiteral("市价"), QStringLiteral("对手价")});
    recorder->events.clear();
    combo->show();
    combo->setCurrentIndex(1);
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].code, WG::UE_COMBO_CHANGED);
    EXPECT_EQ(recorder->events[0].id, 51);
    EXPECT_EQ(recorder->events[0].arg, 1);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    ASSERT_EQ(recorder->events.size(), 2);
    EXPECT_EQ(recorder->events[1].arg, 2);
    EXPECT_EQ(recorder->events[1].text, QStringLiteral("对手价"));
}

TEST_F(WidgetEventsTest, LineEditReportsTextAndCommit)
{
    auto* edit = new WG::CLineEdit(61, recorder);
    edit->show();
    edit->setFocus();
    QTest::keyClicks(edit, QStringLiteral("1.25"));
    const auto changes = recorder->ofCode(WG::UE_TEXT_CHANGED);
    ASSERT_EQ(changes.size(), 4);
    EXPECT_EQ(changes.last().id, 61);
    EXPECT_EQ(changes.last().text, QStringLiteral("1.25"));
    EXPECT_TRUE(recorder->ofCode(WG::UE_VALUE_COMMITTED).isEmpty());
    QTest::keyClick(edit, Qt::Key_Return);
    ASSERT_EQ(recorder->ofCode(WG::UE_VALUE_COMMITTED).size(), 1);
    EXPECT_EQ(recorder->ofCode(WG::UE_VALUE_COMMITTED)[0].text, QStringLiteral("1.25"));
    EXPECT_DOUBLE_EQ(edit->toDouble(), 1.25);
    edit->setText(QStringLiteral("abc"));
    EXPECT_TRUE(utils::isAbsent(edit->toDouble()));
    edit->setText(QString());
    EXPECT_TRUE(utils::isAbsent(edit->toDouble()));
}

TEST_F(WidgetEventsTest, LineEditWithDoubleValidatorRefusesWhatCannotFit)
{
    auto* edit = new WG::CLineEdit(62, recorder);
    edit->setValidator(new WG::CDoubleValidator(0.0, 100.0, 2, edit));
    edit->show();
    edit->setFocus();
    QTest::keyClicks(edit, QStringLiteral("12.345"));
    EXPECT_EQ(edit->text(), QStringLiteral("12.34")) << "a third decimal is refused";
    edit->clear();
    QTest::keyClicks(edit, QStringLiteral("-5"));
    EXPECT_EQ(edit->text(), QStringLiteral("5")) << "no sign below a bottom of zero";
    edit->clear();
    QTest::keyClicks(edit, QStringLiteral("1000"));
    EXPECT_EQ(edit->text(), QStringLiteral("100"));
    EXPECT_DOUBLE_EQ(edit->toDouble(), 100.0);
}

struct ValidatorCase {
    double bottom;
    double top;
    int decimals;
    const char* input;
    QValidator::State expected;
};

class DoubleValidatorTest : public ::testing::TestWithParam<ValidatorCase> {};

TEST_P(DoubleValidatorTest, Validates)
{
    const ValidatorCase& c = GetParam();
    WG::CDoubleValidator validator(c.bottom, c.top, c.decimals, nullptr);
    QString input = QString::fromLatin1(c.input);
    int pos = input.size();
    EXPECT_EQ(validator.validate(input, pos), c.expected)
        << "range [" << c.bottom << ", " << c.top << "] decimals " << c.decimals << " input \"" << c.input << "\"";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DoubleValidatorTest,
    ::testing::Values(ValidatorCase{0.0, 10.0, 4, "", QValidator::Intermediate},
                      ValidatorCase{0.0, 10.0, 4, "0.1234", QValidator::Acceptable},
                      ValidatorCase{0.0, 10.0, 4, "0.12345", QValidator::Invalid},
                      ValidatorCase{0.0, 10.0, 4, "10", QValidator::Acceptable},
                      ValidatorCase{0.0, 10.0, 4, "10.5", QValidator::Invalid},
                      ValidatorCase{0.0, 10.0, 4, "-1", QValidator::Invalid},
                      ValidatorCase{0.0, 10.0, 4, "1e3", QValidator::Invalid},
                      ValidatorCase{0.0, 10.0, 4, "abc", QValidator::Invalid},
                      ValidatorCase{0.0, 10.0, 4, ".", QValidator::Intermediate},
                      ValidatorCase{0.05, 10.0, 2, "0.0", QValidator::Intermediate},
                      ValidatorCase{0.05, 10.0, 2, "0.05", QValidator::Acceptable},
                      ValidatorCase{-5.0, 5.0, 1, "-", QValidator::Intermediate},
                      ValidatorCase{-5.0, 5.0, 1, "-4.5", QValidator::Acceptable},
                      ValidatorCase{-5.0, 5.0, 1, "-6", QValidator::Invalid},
                      ValidatorCase{0.0, 100.0, 0, "12", QValidator::Acceptable},
                      ValidatorCase{0.0, 100.0, 0, "12.", QValidator::Invalid}));

TEST(DoubleValidatorFixup, ClampsIntoRange)
{
    WG::CDoubleValidator validator(0.05, 10.0, 2, nullptr);
    QString low = QStringLiteral("0.01");
    validator.fixup(low);
    EXPECT_EQ(low, QStringLiteral("0.05"));
    QString fine = QStringLiteral("3.1");
    validator.fixup(fine);
    EXPECT_EQ(fine, QStringLiteral("3.10"));
}

TEST_F(WidgetEventsTest, SearchEditDeliversFilterText)
{
    auto* search = new WG::CSearchTextLineEdit(recorder, 71);
    search->setEmptyTip(QStringLiteral("搜索合约"));
    search->show();
    search->setFocus();
    QTest::keyClicks(search->lineEdit(), QStringLiteral("C"));
    const auto filters = recorder->ofCode(WG::UE_TEXT_FILTER_CHANGED);
    ASSERT_EQ(filters.size(), 1);
    EXPECT_EQ(filters[0].id, 71);
    EXPECT_EQ(filters[0].text, QStringLiteral("C"));
    EXPECT_EQ(search->getText(), QStringLiteral("C"));
    search->setText(QStringLiteral("50ETF购"));
    EXPECT_EQ(recorder->ofCode(WG::UE_TEXT_FILTER_CHANGED).last().text, QStringLiteral("50ETF购"));
    EXPECT_EQ(search->lineEdit()->placeholderText(), QStringLiteral("搜索合约"));
}

TEST_F(WidgetEventsTest, CheckBoxReportsClickAndNewState)
{
    auto* check = new WG::CCheckBox(81, QStringLiteral("显示持仓"), recorder);
    check->show();
    QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(40, check->height() / 2));
    EXPECT_TRUE(check->isChecked());
    ASSERT_EQ(recorder->ofCode(WG::UE_CHECK_CLICKED).size(), 1);
    EXPECT_EQ(recorder->ofCode(WG::UE_CHECK_CLICKED)[0].id, 81);
    ASSERT_EQ(recorder->ofCode(WG::UE_CHECK_TOGGLED).size(), 1);
    EXPECT_EQ(recorder->ofCode(WG::UE_CHECK_TOGGLED)[0].arg, 1);
    check->setChecked(false);
    ASSERT_EQ(recorder->ofCode(WG::UE_CHECK_TOGGLED).size(), 2);
    EXPECT_EQ(recorder->ofCode(WG::UE_CHECK_TOGGLED)[1].arg, 0);
    EXPECT_EQ(recorder->ofCode(WG::UE_CHECK_CLICKED).size(), 1) << "a change by code is no click";
    check->setCheckable(false);
    QTest::mouseClick(check, Qt::LeftButton);
    EXPECT_FALSE(check->isChecked());
}

TEST_F(WidgetEventsTest, RadioGroupKeepsOneChecked)
{
    auto* group = new WG::CRadioButtonGroup(recorder);
    group->addButton(QStringLiteral("看涨"), 1, true, true);
    group->addButton(QStringLiteral("看跌"), 2, false, true);
    group->addButton(QStringLiteral("突破"), 3, false, false);
    group->resize(300, 24);
    group->show();
    recorder->events.clear();
    EXPECT_EQ(group->getCheckedButtonID(), 1);
    QTest::mouseClick(group->button(2), Qt::LeftButton);
    EXPECT_EQ(group->getCheckedButtonID(), 2);
    EXPECT_FALSE(group->button(1)->isChecked());
    const auto toggles = recorder->ofCode(WG::UE_CHECK_TOGGLED);
    ASSERT_EQ(toggles.size(), 2);
    bool sawOn = false;
    for (const auto& toggle : toggles) {
        if (toggle.id == 2) {
            EXPECT_EQ(toggle.arg, 1);
            sawOn = true;
        } else {
            EXPECT_EQ(toggle.id, 1);
            EXPECT_EQ(toggle.arg, 0);
        }
    }
    EXPECT_TRUE(sawOn);
    QTest::mouseClick(group->button(3), Qt::LeftButton);
    EXPECT_EQ(group->getCheckedButtonID(), 2) << "a disabled member cannot be chosen";
    group->setButtonCheckedByID(3);
    EXPECT_EQ(group->getCheckedButtonID(), 3);
}

TEST_F(WidgetEventsTest, ImageWidgetClickDeliversItsId)
{
    auto* image = new WG::CImageWidget(91, QStringLiteral("tc_img_btn_add_basket"), recorder);
    image->resize(24, 24);
    image->show();
    QTest::mouseClick(image, Qt::LeftButton);
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].code, WG::UE_BUTTON_CLICKED);
    EXPECT_EQ(recorder->events[0].id, 91);
}

TEST_F(WidgetEventsTest, EventsCrossPlainWidgetsAndLayoutWidgets)
{
    auto* list = new WG::CWidgetList(Qt::Horizontal, recorder);
    auto* plain = new QWidget();
    auto* button = new WG::CSmallNormalButton(101, false, WG::NBT_NORMAL, QStringLiteral("确定"), plain);
    list->addFixedWidget(plain, WG::WA_CENTER, true);
    list->resize(200, 30);
    list->show();
    plain->resize(80, 24);
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].id, 101);
}

TEST_F(WidgetEventsTest, DialogPassesUnknownEventsOnUnchanged)
{
    WG::CBaseDialog dialog(recorder);
    auto* check = new WG::CCheckBox(111, QStringLiteral("不再提示"), &dialog);
    dialog.contentLayout()->addWidget(check);
    check->setChecked(true);
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].code, WG::UE_CHECK_TOGGLED);
    EXPECT_EQ(recorder->events[0].id, 111);
    EXPECT_EQ(recorder->events[0].arg, 1);
    EXPECT_EQ(recorder->events[0].text, QStringLiteral("不再提示"));
}

TEST_F(WidgetEventsTest, DialogCloseButtonRejects)
{
    WG::CCommonDialog dialog(recorder);
    dialog.setTitle(QStringLiteral("设置"));
    EXPECT_EQ(dialog.title(), QStringLiteral("设置"));
    dialog.show();
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    auto* close = dialog.titleBar()->findChild<WG::CPushButton*>();
    ASSERT_NE(close, nullptr);
    QTest::mouseClick(close, Qt::LeftButton);
    EXPECT_EQ(rejected.count(), 1);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(recorder->events.isEmpty()) << "the close button is the dialog's own business";
}

TEST_F(WidgetEventsTest, CommonDialogOwnsAndReplacesItsInnerWidget)
{
    WG::CCommonDialog dialog(recorder);
    QPointer<QWidget> first = new QWidget();
    first->setMinimumSize(200, 100);
    dialog.setInnerWidget(first);
    EXPECT_EQ(dialog.innerWidget(), first.data());
    EXPECT_EQ(first->parentWidget(), &dialog);
    auto* second = new WG::CLineEdit(5, nullptr);
    dialog.setInnerWidget(second);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull()) << "the replaced widget is deleted";
    QTimer::singleShot(50, &dialog, [&dialog]() { dialog.accept(); });
    EXPECT_EQ(dialog.exec(), int(QDialog::Accepted));
}

TEST_F(WidgetEventsTest, WidgetListLengthCountsFixedMembers)
{
    auto* list = new WG::CWidgetList(Qt::Horizontal, recorder);
    list->setMargin(2, 1, 3, 1);
    list->setSpacing(4);
    auto* a = new QWidget();
    a->setFixedSize(30, 20);
    auto* b = new QWidget();
    b->setFixedSize(40, 20);
    auto* stretch = new QWidget();
    list->addFixedWidget(a, WG::WA_CENTER, false);
    list->addFixedWidget(b, WG::WA_LEADING, false);
    list->addStretchWidget(stretch, 1, WG::WA_FILL, false);
    list->addFixedSpace(6);
    list->updateWidgetLength();
    // margins 5, members 30 + 40 + 0, spaces 6, three gaps of 4 between the widget members
    EXPECT_EQ(list->minimumWidth(), 5 + 30 + 40 + 0 + 6 + 2 * 4);
    list->resize(300, 22);
    list->show();
    QApplication::processEvents();
    EXPECT_EQ(a->x(), 2);
    EXPECT_EQ(b->x(), 2 + 30 + 4);
    EXPECT_GT(stretch->width(), 150) << "the stretching member takes the free length";
    list->removeAllWidgets();
    EXPECT_EQ(list->count(), 0);
}

TEST_F(WidgetEventsTest, ToolBarWrapsAndGrows)
{
    auto* bar = new WG::CAutoExpandToolBar("clr_toolbar_background", 4, 0, 4, 0, recorder, 4);
    for (int i = 0; i < 6; ++i) {
        auto* item = new WG::CSmallNormalButton(200 + i, false, WG::NBT_NORMAL, QStringLiteral("按钮%1").arg(i), nullptr);
        item->setFixedWidth(60);
        bar->addToolItem(item, i == 5);
    }
    bar->addSeperator();
    bar->resize(600, 30);
    bar->show();
    QApplication::processEvents();
    const int row = WG::CUiResource::get()->getSize(QStringLiteral("siz_tool_bar_size"));
    EXPECT_EQ(bar->rowCount(), 1);
    EXPECT_EQ(bar->height(), row);
    bar->resize(140, bar->height());
    QApplication::processEvents();
    EXPECT_GE(bar->rowCount(), 3);
    EXPECT_EQ(bar->height(), bar->rowCount() * row);
    EXPECT_EQ(bar->heightForWidth(600), row);
}

TEST_F(WidgetEventsTest, SplitContainerKeepsTheFixedSecondLength)
{
    auto* split = new WG::CSplitContainer(Qt::Horizontal, 3, recorder);
    split->resize(500, 200);
    split->setWidgets(new QWidget(), new QWidget(), true, 120);
    split->show();
    QApplication::processEvents();
    EXPECT_EQ(split->getSecondWidth(), 120);
    split->resize(700, 200);
    QApplication::processEvents();
    EXPECT_EQ(split->getSecondWidth(), 120) << "the first member takes the added width";
    split->setSpliterVisible(false);
    EXPECT_FALSE(split->isSpliterVisible());
    EXPECT_EQ(split->splitter()->handleWidth(), 0);
}

}  // namespace
