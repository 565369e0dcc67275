#include "board/coptionpricetgreekstable.h"

#include "board/cpricetrowbuilder.h"
#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/user.h"

namespace TC {

namespace {

const int kExColumns[] = {8, 6, 4, 2};

bool importOn()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr && config->publishedTradeSetting().autoImportExGreeks;
}

}  // namespace

COptionPriceTGreeksTable::COptionPriceTGreeksTable(QWidget* parent) : WG::COddEvenRowTable(1001, parent, WG::BTMF_ALL)
{
    setFlag(WG::EBaseTableFlags(511));
    clearColumns();
    setColumnCount(kColumnCount);
    const char* headers[kColumnCount] = {"期权到期日",   "delta", "外部导入delta", "gamma", "外部导入gamma",
                                         "theta",        "外部导入theta", "vega", "外部导入vega"};
    for (int column = 0; column < kColumnCount; ++column) {
        setColumnHeader(column, QString::fromUtf8(headers[column]));
        boldColumns.insert(column);
    }
    for (int view = 0; view < columnCount(); ++view) {
        const int column = columnID(view);
        setColumnBoldFont(column, true);
        setColumnFlashChange(column, false);
    }
    if (!importOn()) {
        for (int column : kExColumns) {
            setColumnVisible(column, false);
        }
    }
}

COptionPriceTGreeksTable::~COptionPriceTGreeksTable() = default;

void COptionPriceTGreeksTable::clearTable()
{
    clear();
    upToDate = false;
    shown.clear();
    sums.clear();
    dirty.clear();
    rowDates.clear();
    dateCodes.clear();
    greekSums.clear();
}

void COptionPriceTGreeksTable::setInstrument(QMap<QString, QStringList> dates)
{
    clearTable();
    totalRow = -1;
    for (auto it = dates.constBegin(); it != dates.constEnd(); ++it) {
        const int row = appendRow();
        rowDates[row] = it.key().toStdString();
        setItemText(row, 0, it.key(), true);
        dateCodes[it.key().toStdString()] = it.value();
    }
    totalRow = appendRow();
    setItemText(totalRow, 0, QStringLiteral("合计"), true);
    refreshAll();
    adjustColumnWidth();  // the dates and sums are known now
}

void COptionPriceTGreeksTable::foldRow(int row, const boost::shared_ptr<TC::CPriceData>& data)
{
    if (!data) {
        return;
    }
    const std::string key = utils::vqStockKey(data->market, data->code);
    const QString code = QString::fromStdString(key);
    const unsigned long long h = utils::hash(key);
    const int net = rowCode2Net.value(code).sum();
    std::map<int, utils::TStringMapSum<double>>& sums = greekSums[row];
    auto share = [this, row, h, &sums](int column, double value) {
        if (sums[column].change(h, value)) {
            dirty.insert({row, column});
        }
    };
    if (net == 0) {
        for (int column : {1, 3, 5, 7, 2, 4, 6, 8}) {
            share(column, 0.0);
        }
        return;
    }
    CExchangeClient* client = utils::CManualSingletonT<CExchangeClient>::instance();
    if (client == nullptr || !client->getCodeInfo(code)) {
        return;
    }
    nqservice::CGreeksValue value;
    const boost::shared_ptr<nqservice::GreekAndOptionsCalculator> calculator =
        nqservice::GreekAndOptionsCalculator::instance();
    if (calculator && calculator->calcGreeks(key, value, false, true)) {
        share(1, net * value.delta);
        share(3, net * value.gamma);
        share(5, net * value.theta);
        share(7, net * value.vega);
    }
    CUserConfig* config = getUserConfig();
    const auto ex = config != nullptr ? config->getOptionExGreeks(code)
                                      : boost::shared_ptr<nqservice::COptionExGreeksVolatility>();
    if (ex) {
        // An absent Greek of the record adds nothing rather than a huge marker.
        auto times = [net](double greek) { return utils::isAbsent(greek) ? 0.0 : net * greek; };
        share(2, times(ex->exDelta));
        share(4, times(ex->exGamma));
        share(6, times(ex->exTheta));
        share(8, times(ex->exVega));
    }
}

void COptionPriceTGreeksTable::showSums()
{
    const int flags = CPriceTRowBuilder::segmentedFlags();
    std::map<int, utils::TStringMapSum<double>> totals;
    // Every quote shows every sum: a cell whose value and format stand as last
    // written is left alone, so a tick costs the sums that moved.
    auto show = [this, flags](int row, int column, double value) {
        const Shown wanted{value, flags};
        auto it = shown.find({row, column});
        if (it != shown.end() && it->second.value == wanted.value && it->second.flags == wanted.flags) {
            return;
        }
        shown[{row, column}] = wanted;
        setItemDouble(row, column, value, 4, flags, true);
    };
    if (dirty.empty() && upToDate) {
        return;  // no share moved since the last show: the cells stand as they are
    }
    // A sum is added up again only when one of its shares changed.
    for (const auto& cell : dirty) {
        sums[cell] = greekSums[cell.first][cell.second].sum();
    }
    dirty.clear();
    for (const auto& row : greekSums) {
        for (const auto& column : row.second) {
            const double value = sums[{row.first, column.first}];
            show(row.first, column.first, value);
            totals[column.first].update(static_cast<unsigned long long>(row.first), value);
        }
    }
    if (totalRow >= 0) {
        for (const auto& column : totals) {
            show(totalRow, column.first, column.second.sum());
        }
    }
    upToDate = true;
    QWidget::update();
}

void COptionPriceTGreeksTable::refreshAll()
{
    upToDate = false;
    // The rows of the dates, and the total row kept after them: it is written on every show.
    setRowCount(static_cast<int>(rowDates.size()) + (totalRow >= 0 ? 1 : 0));
    if (totalRow >= 0) {
        setItemText(totalRow, 0, QStringLiteral("合计"), true);
    }
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    for (const auto& row : rowDates) {
        const auto codes = dateCodes.constFind(row.second);
        if (codes == dateCodes.constEnd() || quotes == nullptr) {
            continue;
        }
        for (const QString& code : codes.value()) {
            foldRow(row.first, quotes->getStockPrice(code));
        }
    }
    showSums();
}

int COptionPriceTGreeksTable::rowOfCode(const QString& code) const
{
    for (auto date = dateCodes.constBegin(); date != dateCodes.constEnd(); ++date) {
        if (!date.value().contains(code)) {
            continue;
        }
        for (const auto& row : rowDates) {
            if (row.second == date.key()) {
                return row.first;
            }
        }
        return -1;
    }
    return -1;
}

void COptionPriceTGreeksTable::updateTableByPrice(boost::shared_ptr<TC::CPriceData> data)
{
    if (!data) {
        return;
    }
    const QString code = QString::fromStdString(utils::vqStockKey(data->market, data->code));
    CExchangeClient* client = utils::CManualSingletonT<CExchangeClient>::instance();
    if (client == nullptr || !client->getCodeInfo(code)) {
        return;
    }
    const int row = rowOfCode(code);
    if (row >= 0) {
        foldRow(row, data);
    }
    showSums();
}

void COptionPriceTGreeksTable::updatePositionStatics(const QString& code, const std::string& recordKey, int net)
{
    rowCode2Net[code].update(utils::hash(recordKey), net);
    const int row = rowOfCode(code);
    if (row < 0) {
        return;
    }
    CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
    if (quotes != nullptr) {
        foldRow(row, quotes->getStockPrice(code));
    }
    showSums();
}

void COptionPriceTGreeksTable::updateExGreeksVisible()
{
    if (!importOn()) {
        return;
    }
    for (int column : kExColumns) {
        setColumnVisible(column, true);
    }
}

}  // namespace TC
