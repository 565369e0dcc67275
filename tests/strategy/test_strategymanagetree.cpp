// The basket tree: branches, baskets in name order, create, rename, delete,
// and the events told upward.
#include "strategy/cstrategymanagetree.h"

#include "strategyfixture.h"

#include "strategy/cstrategyitem.h"
#include "strategy/cstrategytypeitem.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cmessagetip.h"
#include "toolkit/cpushbutton.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>

using strategytest::leg;
using strategytest::settle;
using strategytest::writeBasket;
using TC::CStrategyManageTree;

namespace {

class StrategyTreeTest : public strategytest::StrategyTest {
protected:
    void SetUp() override
    {
        StrategyTest::SetUp();
        recorder->resize(300, 400);
    }
    CStrategyManageTree* makeTree()
    {
        tree = new CStrategyManageTree(recorder);
        tree->resize(300, 400);
        recorder->show();
        return tree;
    }
    // Renames the current basket through its line edit.
    void rename(const QString& text)
    {
        tree->slotRenameStrategy(true);
        auto* edit = qobject_cast<QLineEdit*>(tree->itemWidget(tree->currentItem(), 0));
        ASSERT_NE(edit, nullptr);
        edit->setText(text);
        emit edit->editingFinished();
        settle();
    }

    CStrategyManageTree* tree = nullptr;
};

}  // namespace

TEST_F(StrategyTreeTest, TwoBranchesAndBasketsInNameOrder)
{
    writeBasket(QStringLiteral("b组合"), {});
    writeBasket(QStringLiteral("a组合"), {});
    writeBasket(QStringLiteral("我的组合"), {});
    makeTree();
    ASSERT_EQ(tree->topLevelItemCount(), 2);
    EXPECT_EQ(tree->customBranchWidget()->caption(), QStringLiteral("自选组合"));
    EXPECT_EQ(tree->winnerBranchWidget()->caption(), QStringLiteral("稳稳胜"));
    EXPECT_TRUE(tree->winnerBranchWidget()->addButton()->isHidden());
    EXPECT_EQ(tree->basketNames(), (QStringList{QStringLiteral("a组合"), QStringLiteral("b组合"), QStringLiteral("我的组合")}));
    EXPECT_EQ(tree->currentBasketName(), QStringLiteral("a组合")) << "the first basket is current after a load";
    EXPECT_TRUE(tree->customBranch()->isExpanded());
}

TEST_F(StrategyTreeTest, AReloadWithNoBasketLeavesNoCurrentRow)
{
    makeTree();
    EXPECT_EQ(tree->customBranch()->childCount(), 0);
    EXPECT_TRUE(tree->currentBasketName().isEmpty());
    EXPECT_EQ(tree->currentItem(), nullptr);
}

TEST_F(StrategyTreeTest, ReloadSelectsTheNamedBasket)
{
    writeBasket(QStringLiteral("a"), {});
    writeBasket(QStringLiteral("b"), {});
    makeTree();
    tree->reload(QStringLiteral("b"));
    EXPECT_EQ(tree->currentBasketName(), QStringLiteral("b"));
}

TEST_F(StrategyTreeTest, NewBasketFillsTheFirstGapAndIsTold)
{
    writeBasket(QStringLiteral("我的组合"), {});
    writeBasket(QStringLiteral("我的组合2"), {});
    makeTree();
    QTest::mouseClick(tree->customBranchWidget()->addButton(), Qt::LeftButton);
    const auto created = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_CREATED);
    ASSERT_EQ(created.size(), 1);
    EXPECT_EQ(created[0].text, QStringLiteral("我的组合1"));
    const TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
    ASSERT_TRUE(baskets.contains(QStringLiteral("我的组合1")));
    EXPECT_TRUE(baskets.value(QStringLiteral("我的组合1")).legs.isEmpty());
    EXPECT_EQ(baskets.value(QStringLiteral("我的组合1")).name, QStringLiteral("我的组合1"));
}

TEST_F(StrategyTreeTest, AClickOnABasketIsToldTwice)
{
    writeBasket(QStringLiteral("a"), {});
    writeBasket(QStringLiteral("b"), {});
    makeTree();
    auto* item = qobject_cast<TC::CStrategyItem*>(tree->itemWidget(tree->basketRow(QStringLiteral("b")), 0));
    ASSERT_NE(item, nullptr);
    QTest::mouseClick(item, Qt::LeftButton, Qt::NoModifier, QPoint(40, 10));
    const auto chosen = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_CHOSEN);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(chosen[0].arg, 0);
    EXPECT_EQ(chosen[0].text, QStringLiteral("b"));
    EXPECT_EQ(chosen[1].text, QStringLiteral("b"));
    EXPECT_EQ(tree->currentBasketName(), QStringLiteral("b"));
}

TEST_F(StrategyTreeTest, BranchClicksTellTheirType)
{
    makeTree();
    QTest::mouseClick(tree->winnerBranchWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(40, 10));
    QTest::mouseClick(tree->customBranchWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(40, 10));
    const auto chosen = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_CHOSEN);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(chosen[0].arg, CStrategyManageTree::IT_WINNER_BRANCH);
    EXPECT_TRUE(chosen[0].text.isEmpty());
    EXPECT_EQ(chosen[1].arg, CStrategyManageTree::IT_CUSTOM_BRANCH);
    // A double click on the baskets' branch folds it.
    tree->slotTypeItemDoubleClicked(CStrategyManageTree::IT_CUSTOM_BRANCH);
    EXPECT_FALSE(tree->customBranch()->isExpanded());
}

TEST_F(StrategyTreeTest, RenameToTheSameNameKeepsTheLegs)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 2, nqservice::OT_BUY)});
    makeTree();
    rename(QStringLiteral("a"));
    const TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
    ASSERT_EQ(baskets.keys(), QStringList{QStringLiteral("a")});
    ASSERT_EQ(baskets.value(QStringLiteral("a")).legs.size(), 1);
    EXPECT_EQ(baskets.value(QStringLiteral("a")).legs.at(0)->quantity, 2);
    EXPECT_EQ(recorder->ofCode(CStrategyManageTree::UE_STRATEGY_RENAMED).size(), 1);
}

TEST_F(StrategyTreeTest, RenameMovesTheBasketAndItsLegs)
{
    writeBasket(QStringLiteral("a"), {leg("10000011", 2, nqservice::OT_BUY)});
    makeTree();
    rename(QStringLiteral("z"));
    const TC::TStrategyMap baskets = TC::CStrategyBaskets::copy();
    ASSERT_EQ(baskets.keys(), QStringList{QStringLiteral("z")});
    EXPECT_EQ(baskets.value(QStringLiteral("z")).name, QStringLiteral("z"));
    EXPECT_EQ(baskets.value(QStringLiteral("z")).legs.size(), 1);
    const auto chosen = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_CHOSEN);
    ASSERT_FALSE(chosen.isEmpty());
    EXPECT_EQ(chosen.last().text, QStringLiteral("z"));
}

TEST_F(StrategyTreeTest, AnEmptyNameIsRefusedWithATip)
{
    writeBasket(QStringLiteral("a"), {});
    makeTree();
    WG::CMessageTip::resetRecord();
    rename(QString());
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("名称不能为空"));
    EXPECT_EQ(TC::CStrategyBaskets::copy().keys(), QStringList{QStringLiteral("a")});
    EXPECT_TRUE(recorder->ofCode(CStrategyManageTree::UE_STRATEGY_RENAMED).isEmpty());
    auto* item = qobject_cast<TC::CStrategyItem*>(tree->itemWidget(tree->basketRow(QStringLiteral("a")), 0));
    ASSERT_NE(item, nullptr) << "the old name is back in the row";
    EXPECT_EQ(item->name(), QStringLiteral("a"));
}

TEST_F(StrategyTreeTest, ATakenNameIsRefusedWithATip)
{
    writeBasket(QStringLiteral("a"), {});
    writeBasket(QStringLiteral("b"), {});
    makeTree();
    WG::CMessageTip::resetRecord();
    rename(QStringLiteral("b"));
    EXPECT_EQ(WG::CMessageTip::lastTip().text, QStringLiteral("此名称已存在"));
    EXPECT_EQ(TC::CStrategyBaskets::copy().keys(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(tree->currentBasketName(), QStringLiteral("a"));
}

TEST_F(StrategyTreeTest, ABasketDeletedDuringTheRenameDropsTheEdit)
{
    writeBasket(QStringLiteral("a"), {});
    makeTree();
    tree->slotRenameStrategy(true);
    auto* edit = qobject_cast<QLineEdit*>(tree->itemWidget(tree->currentItem(), 0));
    ASSERT_NE(edit, nullptr);
    TC::CStrategyBaskets::write(TC::TStrategyMap());
    edit->setText(QStringLiteral("b"));
    emit edit->editingFinished();
    EXPECT_TRUE(TC::CStrategyBaskets::copy().isEmpty());
    EXPECT_EQ(tree->itemWidget(tree->currentItem(), 0), nullptr) << "the row stays empty until a reload";
}

TEST_F(StrategyTreeTest, DeletingTheLastBasketTellsEmptyNames)
{
    writeBasket(QStringLiteral("a"), {});
    makeTree();
    auto* item = qobject_cast<TC::CStrategyItem*>(tree->itemWidget(tree->basketRow(QStringLiteral("a")), 0));
    ASSERT_NE(item, nullptr);
    recorder->events.clear();
    QTest::mouseClick(item->deleteButton(), Qt::LeftButton);
    settle();
    EXPECT_TRUE(TC::CStrategyBaskets::copy().isEmpty());
    const auto removed = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_REMOVED);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_TRUE(removed[0].text.isEmpty());
    const auto chosen = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_CHOSEN);
    ASSERT_FALSE(chosen.isEmpty());
    EXPECT_TRUE(chosen.last().text.isEmpty());
    EXPECT_EQ(tree->customBranch()->childCount(), 0);
}

TEST_F(StrategyTreeTest, DeletingABasketSelectsTheFirstRemaining)
{
    writeBasket(QStringLiteral("a"), {});
    writeBasket(QStringLiteral("b"), {});
    makeTree();
    tree->select(QStringLiteral("b"));
    recorder->events.clear();
    tree->slotDeleteStrategy(true, QStringLiteral("b"));
    EXPECT_EQ(TC::CStrategyBaskets::copy().keys(), QStringList{QStringLiteral("a")});
    const auto removed = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_REMOVED);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0].text, QStringLiteral("a"));
    EXPECT_EQ(tree->currentBasketName(), QStringLiteral("a"));
    // A name the map lacks changes nothing.
    recorder->events.clear();
    tree->slotDeleteStrategy(true, QStringLiteral("nope"));
    EXPECT_TRUE(recorder->events.isEmpty());
}

TEST_F(StrategyTreeTest, DeleteAllAnsweredWithCancelChangesNothing)
{
    writeBasket(QStringLiteral("a"), {});
    writeBasket(QStringLiteral("b"), {});
    makeTree();
    WG::CMessageBox::TestHook hook;
    hook.queueAnswer(QMessageBox::Cancel);
    QTest::mouseClick(tree->customBranchWidget()->deleteButton(), Qt::LeftButton);
    ASSERT_EQ(hook.count(), 1);
    EXPECT_EQ(hook.last().text, QStringLiteral("是否删除下面所有的组合？"));
    EXPECT_EQ(hook.last().title, QStringLiteral("提示"));
    EXPECT_EQ(TC::CStrategyBaskets::copy().size(), 2);
    EXPECT_TRUE(recorder->ofCode(CStrategyManageTree::UE_STRATEGY_REMOVED).isEmpty());

    hook.queueAnswer(QMessageBox::Ok);
    QTest::mouseClick(tree->customBranchWidget()->deleteButton(), Qt::LeftButton);
    EXPECT_TRUE(TC::CStrategyBaskets::copy().isEmpty());
    const auto removed = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_REMOVED);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_TRUE(removed[0].text.isEmpty());
    // The current basket was among them: the panel heard it had gone.
    const auto chosen = recorder->ofCode(CStrategyManageTree::UE_STRATEGY_CHOSEN);
    ASSERT_FALSE(chosen.isEmpty());
    EXPECT_TRUE(chosen.last().text.isEmpty());
    EXPECT_EQ(tree->customBranch()->childCount(), 0);
}

TEST_F(StrategyTreeTest, ShiftWGoesToTheParent)
{
    makeTree();
    QKeyEvent event(QEvent::KeyPress, Qt::Key_W, Qt::ShiftModifier);
    QApplication::sendEvent(tree, &event);
    EXPECT_FALSE(event.isAccepted());
}
