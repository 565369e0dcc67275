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
    if (net == 0) {
        for (int column : {1, 3, 5, 7, 2, 4, 6, 8}) {
            sums[column].update(h, 0.0);
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
        sums[1].update(h, net * value.delta);
        sums[3].update(h, net * value.gamma);
        sums[5].update(h, net * value.theta);
        sums[7].update(h, net * value.vega);
    }
    CUserConfig* config = getUserConfig();
    const auto ex = config != nullptr ? config->getOptionExGreeks(code)
                                      : boost::shared_ptr<nqservice::COptionExGreeksVolatility>();
    if (ex) {
        // An absent Greek of the record adds nothing rather than a huge marker.
        auto share = [net](double greek) { return utils::isAbsent(greek) ? 0.0 : net * greek; };
        sums[2].update(h, share(ex->exDelta));
        sums[4].update(h, share(ex->exGamma));
        sums[6].update(h, share(ex->exTheta));
        sums[8].update(h, share(ex->exVega));
    }
}

void COptionPriceTGreeksTable::showSums()
{
    const int flags = CPriceTRowBuilder::segmentedFlags();
    std::map<int, utils::TStringMapSum<double>> totals;
    for (const auto& row : greekSums) {
        for (const auto& column : row.second) {
            const double value = column.second.sum();
            setItemDouble(row.first, column.first, value, 4, flags, true);
            totals[column.first].update(static_cast<unsigned long long>(row.first), value);
        }
    }
    if (totalRow >= 0) {
        for (const auto& column : totals) {
            setItemDouble(totalRow, column.first, column.second.sum(), 4, flags, true);
        }
    }
    QWidget::update();
}

void COptionPriceTGreeksTable::refreshAll()
{
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
