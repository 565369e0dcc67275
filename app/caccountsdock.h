// The accounts dock "账户": the orders (a "撤单" button on each working one),
// deals, positions, funds and combination positions ("组合持仓", with
// "构建组合" and "解除组合") of the user's ready accounts, in tabs of toolkit
// tables fed by CAccountsFeed. Destroying it ends its subscriptions.
#pragma once

#include "seam/idata.h"

#include <QWidget>

#include <string>
#include <vector>

class QAbstractButton;
class QTabWidget;

namespace WG {
class CBaseTableColumnPushButtonDelegate;
}

namespace desk {

class CAccountsFeed;
class CAccountRecordModel;
class CCombinationBuildDialog;
class CCombinationsTableModel;
class CDealsTableModel;
class CFundsTableModel;
class COrdersTableModel;
class CPositionsTableModel;
class CRecordTable;

class CAccountsDock : public QWidget {
    Q_OBJECT
public:
    enum ETab { TAB_ORDERS, TAB_DEALS, TAB_POSITIONS, TAB_FUNDS, TAB_COMBINATIONS, TAB_COUNT };

    // Starts following the ready accounts at once.
    explicit CAccountsDock(QWidget* parent = nullptr);
    ~CAccountsDock() override;

    QTabWidget* tabs() const { return m_tabs; }
    CRecordTable* table(ETab tab) const { return m_tables[tab]; }
    COrdersTableModel* ordersModel() const { return m_orders; }
    CDealsTableModel* dealsModel() const { return m_deals; }
    CPositionsTableModel* positionsModel() const { return m_positions; }
    CFundsTableModel* fundsModel() const { return m_funds; }
    CCombinationsTableModel* combinationsModel() const { return m_combinations; }
    QAbstractButton* buildButton() const { return m_buildButton; }
    QAbstractButton* releaseButton() const { return m_releaseButton; }
    CAccountsFeed* feed() const { return m_feed; }
    WG::CBaseTableColumnPushButtonDelegate* cancelButtons() const { return m_cancelButtons; }

    // Asks the trade client to cancel the order of a row key; what it answers is
    // told to the user. False when no working order has the key or no client is there.
    bool cancelOrder(const std::string& orderKey);
    // The "构建组合" dialog over the held legs of the stock-option accounts, not yet shown.
    CCombinationBuildDialog* makeBuildDialog();
    // Releases the whole of the selected combination; false, with the reason told, when it cannot.
    bool releaseSelected();

private:
    void onRecords(int dataType, const std::vector<nqservice::IDataPtr>& records);
    void onAccountGone(const std::string& accountKey);
    void widenToFit(ETab tab, const std::vector<nqservice::IDataPtr>& records);
    void tell(const QString& text);
    void openBuildDialog();

    QTabWidget* m_tabs = nullptr;
    COrdersTableModel* m_orders = nullptr;
    CDealsTableModel* m_deals = nullptr;
    CPositionsTableModel* m_positions = nullptr;
    CFundsTableModel* m_funds = nullptr;
    CCombinationsTableModel* m_combinations = nullptr;
    QAbstractButton* m_buildButton = nullptr;
    QAbstractButton* m_releaseButton = nullptr;
    CRecordTable* m_tables[TAB_COUNT] = {};
    CAccountRecordModel* m_models[TAB_COUNT] = {};
    WG::CBaseTableColumnPushButtonDelegate* m_cancelButtons = nullptr;
    CAccountsFeed* m_feed = nullptr;
};

}  // namespace desk
