// The message box answers through its test hook without a person, records what
// it said, and its real dialog returns the pressed button; the tip shows near
// its anchor and goes away by itself.
#include "support/testsupport.h"
#include "widgettestsupport.h"

#include "toolkit/widgets.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>

namespace {

const QString kTitle = QStringLiteral("提示");

// Counts dialogs of the toolkit that were shown while it lives.
class DialogShowCounter : public QObject {
public:
    DialogShowCounter() { qApp->installEventFilter(this); }
    ~DialogShowCounter() override { qApp->removeEventFilter(this); }
    int shown = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<WG::CBaseDialog*>(watched) != nullptr) {
            ++shown;
        }
        return false;
    }
};

TEST(MessageBoxHook, AnswersQueuedAnswersInOrderAndRecordsTheBoxes)
{
    WG::CMessageBox::TestHook hook;
    EXPECT_EQ(WG::CMessageBox::TestHook::current(), &hook);
    hook.queueAnswer(QMessageBox::No);
    hook.queueAnswer(QMessageBox::Yes);
    QWidget parent;
    const auto first = WG::CMessageBox::question(nullptr, &parent, kTitle, QStringLiteral("委托数量超过单笔上限，是否拆单？"),
                                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, true, false);
    const auto second = WG::CMessageBox::question(nullptr, &parent, kTitle, QStringLiteral("确认撤单？"),
                                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::No, true, false);
    EXPECT_EQ(first, QMessageBox::No);
    EXPECT_EQ(second, QMessageBox::Yes);
    EXPECT_EQ(hook.pendingAnswers(), 0);
    ASSERT_EQ(hook.count(), 2);
    EXPECT_EQ(hook.records()[0].kind, QStringLiteral("question"));
    EXPECT_EQ(hook.records()[0].title, kTitle);
    EXPECT_EQ(hook.records()[0].text, QStringLiteral("委托数量超过单笔上限，是否拆单？"));
    EXPECT_EQ(hook.records()[0].buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(hook.records()[0].defaultButton, QMessageBox::Yes);
    EXPECT_TRUE(hook.records()[0].queued);
    EXPECT_EQ(hook.last().text, QStringLiteral("确认撤单？"));
    EXPECT_EQ(hook.last().answer, QMessageBox::Yes);
}

TEST(MessageBoxHook, WithoutAQueuedAnswerTheDefaultButtonAnswers)
{
    DialogShowCounter counter;
    WG::CMessageBox::TestHook hook;
    const auto answer = WG::CMessageBox::warning(nullptr, nullptr, kTitle, QStringLiteral("请输入正确的价格"),
                                                 QMessageBox::Ok, QMessageBox::Ok, true);
    EXPECT_EQ(answer, QMessageBox::Ok);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().kind, QStringLiteral("warning"));
    EXPECT_FALSE(hook.last().queued);
    EXPECT_EQ(counter.shown, 0) << "no box was shown";
}

TEST(MessageBoxHook, LeavesWithItsScope)
{
    {
        WG::CMessageBox::TestHook hook;
    }
    EXPECT_EQ(WG::CMessageBox::TestHook::current(), nullptr);
}

// Presses the button with the text on the modal box once it is up; records the box's title.
void pressOnModalBox(const QString& buttonText, QString* seenTitle, QString* seenText)
{
    QTimer::singleShot(0, [=]() {
        testsupport::waitUntil([] { return QApplication::activeModalWidget() != nullptr; }, 3000);
        QWidget* box = QApplication::activeModalWidget();
        if (box == nullptr) {
            return;
        }
        *seenTitle = box->windowTitle();
        for (QLabel* label : box->findChildren<QLabel*>()) {
            *seenText = label->text();
        }
        for (WG::CSmallNormalButton* button : box->findChildren<WG::CSmallNormalButton*>()) {
            if (button->text() == buttonText) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
    });
}

TEST(MessageBoxDialog, ReturnsThePressedButton)
{
    ASSERT_EQ(WG::CMessageBox::TestHook::current(), nullptr);
    DialogShowCounter counter;
    QString title;
    QString text;
    pressOnModalBox(QStringLiteral("否"), &title, &text);
    const auto answer = WG::CMessageBox::question(nullptr, nullptr, kTitle, QStringLiteral("是否删除该篮子？"),
                                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, true, false);
    EXPECT_EQ(answer, QMessageBox::No);
    EXPECT_EQ(title, kTitle);
    EXPECT_EQ(text, QStringLiteral("是否删除该篮子？"));
    EXPECT_EQ(counter.shown, 1) << "without a hook the box is really shown";
}

TEST(MessageBoxDialog, ButtonStyleRenamesButtons)
{
    WG::CButtonStyle style;
    style.setButtonText(QMessageBox::Ok, QStringLiteral("知道了"));
    QString title;
    QString text;
    pressOnModalBox(QStringLiteral("知道了"), &title, &text);
    const auto answer = WG::CMessageBox::warning(&style, nullptr, kTitle, QStringLiteral("账户未登录"), QMessageBox::Ok,
                                                 QMessageBox::Ok, false);
    EXPECT_EQ(answer, QMessageBox::Ok);
    EXPECT_EQ(text, QStringLiteral("账户未登录"));
}

TEST(MessageBoxDialog, EscapeAnswersNoUnlessDefaultIsAsked)
{
    auto pressEscape = []() {
        QTimer::singleShot(0, []() {
            testsupport::waitUntil([] { return QApplication::activeModalWidget() != nullptr; }, 3000);
            if (QWidget* box = QApplication::activeModalWidget()) {
                QTest::keyClick(box, Qt::Key_Escape);
            }
        });
    };
    pressEscape();
    EXPECT_EQ(WG::CMessageBox::question(nullptr, nullptr, kTitle, QStringLiteral("继续？"), QMessageBox::Yes | QMessageBox::No,
                                        QMessageBox::Yes, true, false),
              QMessageBox::No);
    pressEscape();
    EXPECT_EQ(WG::CMessageBox::question(nullptr, nullptr, kTitle, QStringLiteral("继续？"), QMessageBox::Yes | QMessageBox::No,
                                        QMessageBox::Yes, true, true),
              QMessageBox::Yes);
}

TEST(MessageTip, ShowsBelowItsAnchorAndGoesAwayByItself)
{
    WG::CMessageTip::resetRecord();
    QWidget window;
    window.resize(300, 200);
    auto* anchor = new QWidget(&window);
    anchor->setGeometry(20, 30, 100, 24);
    window.show();
    WG::CMessageTip::showTip(anchor, 0x40, QStringLiteral("可用数量不足"), 1, 300);
    EXPECT_TRUE(WG::CMessageTip::isTipVisible());
    const WG::CMessageTipRecord tip = WG::CMessageTip::lastTip();
    EXPECT_EQ(tip.text, QStringLiteral("可用数量不足"));
    EXPECT_EQ(tip.anchor.data(), anchor);
    EXPECT_EQ(tip.align, 64);
    EXPECT_EQ(tip.seconds, 1);
    EXPECT_EQ(tip.maxWidth, 300);
    EXPECT_GE(tip.geometry.top(), anchor->mapToGlobal(QPoint(0, anchor->height())).y()) << "the tip sits below";
    EXPECT_LE(tip.geometry.width(), 300);
    EXPECT_EQ(WG::CMessageTip::tipCount(), 1);
    EXPECT_TRUE(testsupport::waitUntil([] { return !WG::CMessageTip::isTipVisible(); }, 2500));
}

TEST(MessageTip, ANewTipReplacesTheOldAndLeavesWithItsAnchor)
{
    WG::CMessageTip::resetRecord();
    QWidget window;
    auto* anchor = new QWidget(&window);
    window.show();
    WG::CMessageTip::showTip(anchor, WG::AL_BOTTOM, QStringLiteral("第一条"), 3, 300);
    WG::CMessageTip::showTip(anchor, WG::AL_BOTTOM, QStringLiteral("第二条"), 3, 300);
    EXPECT_EQ(WG::CMessageTip::tipCount(), 2);
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("第二条"));
    int visibleTips = 0;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->windowFlags().testFlag(Qt::ToolTip)) {
            ++visibleTips;
        }
    }
    EXPECT_EQ(visibleTips, 1);
    delete anchor;
    EXPECT_TRUE(testsupport::waitUntil([] { return !WG::CMessageTip::isTipVisible(); }, 1000));
    WG::CMessageTip::showTip(nullptr, WG::AL_BOTTOM, QStringLiteral("无处"), 3, 300);
    EXPECT_EQ(WG::CMessageTip::tipCount(), 2) << "a tip needs an anchor";
}

}  // namespace
