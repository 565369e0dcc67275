// The basket tree of the strategy workbench: the trader's baskets under
// "自选组合" and the branch "稳稳胜" that opens the option winner. It creates,
// renames and deletes baskets in the user configuration (member 122) and tells
// its panel of every change by events; it keeps no basket of its own.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QIcon>
#include <QString>
#include <QTreeWidget>

class QKeyEvent;
class QTreeWidgetItem;

namespace TC {

class CStrategyTypeItem;

class CStrategyManageTree : public WG::CEventWidgetT<QTreeWidget> {
    Q_OBJECT
public:
    // Item types of the rows.
    enum EItemType {
        IT_CUSTOM_BRANCH = 2,
        IT_BASKET = 6,
        IT_WINNER_BRANCH = 10,
    };
    // Events told to the panel, each with id 0.
    enum EEvent {
        UE_STRATEGY_CHOSEN = 1254,   // value: item type or 0; text: basket name or ""
        UE_STRATEGY_REMOVED = 1255,  // text: "" or the next name
        UE_STRATEGY_RENAMED = 1256,
        UE_STRATEGY_CREATED = 1257,  // text: the new name
    };

    explicit CStrategyManageTree(QWidget* parent);
    ~CStrategyManageTree() override;

    // Rebuilds every row from the configuration; selects the basket `name`, or
    // the first one when `name` is empty.
    void reload(const QString& name);
    // Selects the basket row of that name and tells the panel (even of a name no row has).
    void select(const QString& name);
    // The name of the current basket row; "" when the current row is no basket.
    QString currentBasketName() const;

    QTreeWidgetItem* customBranch() const { return m_customBranch; }
    QTreeWidgetItem* winnerBranch() const { return m_winnerBranch; }
    CStrategyTypeItem* customBranchWidget() const { return m_customWidget; }
    CStrategyTypeItem* winnerBranchWidget() const { return m_winnerWidget; }
    // The basket rows' names in their order.
    QStringList basketNames() const;
    // The name a row stands for.
    static QString rowText(const QTreeWidgetItem* row);
    // The row of a basket, null when none.
    QTreeWidgetItem* basketRow(const QString& name) const;

    void themeChanged() override;

public slots:
    void slotDeleteStrategy(bool, QString name);
    void slotDelStrategy(int type);
    void slotNewStrategy(bool);
    void slotRenameStrategy(bool);
    void slotRenameFinishEdit();
    void slotTypeItemDoubleClicked(int type);
    void slotTypeItemClicked(int type);
    void slotItemClicked(int type, QString name);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void resetColors();
    void tell(int code, int value, const QString& text) { deliverEvent(code, 0, value, text, nullptr); }
    QTreeWidgetItem* addBasketRow(const QString& name);
    void attachBasketItem(QTreeWidgetItem* row, int type, const QString& name);

    QTreeWidgetItem* m_customBranch = nullptr;
    CStrategyTypeItem* m_customWidget = nullptr;
    QIcon m_branchIcon;
    QIcon m_basketIcon;
    QString m_renameName;
    int m_renameType = 0;
    QTreeWidgetItem* m_renameItem = nullptr;
    QTreeWidgetItem* m_winnerBranch = nullptr;
    CStrategyTypeItem* m_winnerWidget = nullptr;
};

}  // namespace TC
