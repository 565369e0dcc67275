// The model of the combination table: the fields of table 1030 as columns (from
// the type manager's descriptors), a check-box column and twelve computed
// columns (the Greeks and time value of each leg). Account reloads run on the
// model's worker; single records come in from the subscription on any thread.
#pragma once

#include "positions/ccomblegfigures.h"
#include "seam/tradingrecords.h"
#include "toolkit/chpfthreaddatamodel.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QString>

#include <array>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace WG {
class CBaseTableColumnCheckBoxDelegate;
class CBaseTableColumnSimpleTextDelegate;
}  // namespace WG

namespace TC {

class CHpfOptionStrategyPositionModel : public CHpfThreadDataModel {
public:
    // The computed columns of a leg, in column order.
    enum ELegFigure { LF_DELTA = 0, LF_GAMMA, LF_THETA, LF_VEGA, LF_RHO, LF_TIME_VALUE, LF_COUNT };
    static constexpr int kLegColumns = 2 * LF_COUNT;

    CHpfOptionStrategyPositionModel();
    ~CHpfOptionStrategyPositionModel() override;

    void setColumns(const std::vector<int>& dataTypes) override;

    // The check-box column and its delegate (-1 and null when the user's role has none).
    void setCheckColumn(int column, WG::CBaseTableColumnCheckBoxDelegate* delegate);
    int checkColumn() const { return checkBoxColumn; }
    WG::CBaseTableColumnCheckBoxDelegate* checkDelegate() const { return checkBox; }
    // The computed column of a leg (0 or 1) and figure, and its delegate.
    void setLegColumn(int leg, ELegFigure figure, int column, WG::CBaseTableColumnSimpleTextDelegate* delegate);
    int legColumn(int leg, ELegFigure figure) const;
    // The column of a record field by its name, -1 when there is none.
    int fieldColumn(const std::string& fieldName) const;

    // The search by combination number; kept lower case.
    void setSearchText(const QString& text);
    std::string getSearchText() const;
    // The keys of the rows the user has ticked, as the check box tells them.
    void setKeyChecked(const QString& key, bool checked);
    bool isKeyChecked(const QString& key) const;

    // Worker job: replaces the rows of one account with its table 1030.
    void reloadAccount(const std::string& accountKey, int sortColumn, QPair<WG::EFilterType, QSet<QString>> filter);
    // One record from the subscription, on any thread: shown, updated or removed.
    void onPositionDetail(const boost::shared_ptr<nqservice::IData>& data);
    // Figures of legs by stock key, kept for the span of one reload: the
    // combinations of an account share few legs.
    using LegFiguresCache = std::unordered_map<std::string, CCombLegFigures>;
    // Fills a record's computed columns; the keys of check boxes to set up on
    // the GUI thread are appended to checkKeys.
    void fillExtraColumns(const nqservice::CStkOptCombPositionDetail& detail, std::vector<std::string>& checkKeys,
                          LegFiguresCache* cache = nullptr);
    // Sets up the check boxes of rows: visible, enabled, ticked as remembered. GUI thread, or queued to it.
    void applyCheckBoxes(const std::vector<std::string>& keys);

private:
    // Column numbers: the check box, then the twelve computed columns.
    int checkBoxColumn = -1;
    std::array<int, kLegColumns> legColumns;
    QHash<QString, bool> checkedKeys;
    std::string searchText;

    // Of our own: the lock of the two above, the delegates of the columns, the
    // field columns by name and the thread the model was made on.
    mutable std::mutex m_stateMutex;
    WG::CBaseTableColumnCheckBoxDelegate* checkBox = nullptr;
    std::array<WG::CBaseTableColumnSimpleTextDelegate*, kLegColumns> legDelegates;
    QHash<QString, int> fieldColumns;
    std::thread::id m_guiThread;
};

}  // namespace TC
