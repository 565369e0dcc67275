// The pane under the chain: position Greeks summed per expiry of the
// underlying, the calculator's and the imported ones side by side, and a last
// row "合计". Each cell is the sum over held contracts of net position times
// Greek; flat contracts cost no calculation.
#pragma once

#include "seam/common.h"
#include "seam/cpricedata.h"
#include "seam/tradingenums.h"
#include "toolkit/coddevenrowtable.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <map>
#include <set>
#include <utility>
#include <string>

namespace TC {

class COptionPriceTGreeksTable : public WG::COddEvenRowTable {
    Q_OBJECT
public:
    static constexpr int kColumnCount = 9;

    explicit COptionPriceTGreeksTable(QWidget* parent);
    ~COptionPriceTGreeksTable() override;

    // One row per expiry date of the underlying, then "合计".
    void setInstrument(QMap<QString, QStringList> dates);
    void updateTableByPrice(boost::shared_ptr<TC::CPriceData> data);
    void updatePositionStatics(const QString& code, const std::string& recordKey, int net);
    void refreshAll();
    // Rows and sums go; the nets stay.
    void clearTable();
    // The nets go (a new account selection).
    void clearRowCode2NetMap() { rowCode2Net.clear(); }
    // A net share, nothing shown yet.
    void updateRowCode2NetMap(const QString& code, const std::string& recordKey, int net)
    {
        rowCode2Net[code].update(utils::hash(recordKey), net);
    }
    // Only ever shows: the imported columns when the import is on.
    void updateExGreeksVisible();
    void setTradeType(nqservice::EVqTraderType type) { traderType = type; }

    int getTotalRow() const { return totalRow; }
    const std::map<int, std::string>& getRowDates() const { return rowDates; }
    int netOf(const QString& code) const { return rowCode2Net.value(code).sum(); }

private:
    void foldRow(int row, const boost::shared_ptr<TC::CPriceData>& data);
    void showSums();
    // The row of the expiry that lists a code; -1 when none does.
    int rowOfCode(const QString& code) const;

    QSet<int> boldColumns;
    QSet<int> flashColumns;
    std::map<int, std::string> rowDates;
    QMap<std::string, QStringList> dateCodes;
    nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    std::map<int, std::map<int, utils::TStringMapSum<double>>> greekSums;
    QMap<QString, utils::TStringMapSum<int>> rowCode2Net;
    int totalRow = -1;
    // What each sum cell shows now, by (row, column).
    struct Shown {
        double value;
        int flags;
    };
    std::map<std::pair<int, int>, Shown> shown;
    // The sum of each (row, column) as last added up, and those whose shares changed since.
    std::map<std::pair<int, int>, double> sums;
    std::set<std::pair<int, int>> dirty;
    // The cells show every sum as it stands.
    bool upToDate = false;
};

}  // namespace TC
