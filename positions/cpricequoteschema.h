// The columns of the price quote table: column 0 is the strike, and each expiry
// month owns a block of 21 columns, of which each of the four views shows a
// part. Plain data and arithmetic on column numbers, no widgets: the table, its
// rows and the panel address cells by these numbers.
#pragma once

#include <QString>

namespace TC {

class CPriceQuoteSchema {
public:
    static constexpr int kMonthColumns = 21;

    // The place of a value inside its month's block.
    enum ESubIndex {
        PQ_LAST = 0,             // "最新"
        PQ_CHANGE_RATIO = 1,     // "幅度%"
        PQ_VOLUME = 2,           // "总量"
        PQ_OPEN_INTEREST = 3,    // "持仓量"
        PQ_CHANGE = 4,           // "涨跌"
        PQ_BID = 5,              // "买价"
        PQ_INTRINSIC = 6,        // "内在价值"
        PQ_PREMIUM = 7,          // "溢价%"
        PQ_LEVERAGE = 8,         // "杠杆"
        PQ_IMPLIED_VOL = 9,      // "隐波%"
        PQ_HISTORICAL_VOL = 10,  // "历波%"
        PQ_DELTA = 11,
        PQ_GAMMA = 12,
        PQ_THETA = 13,
        PQ_VEGA = 14,
        PQ_RHO = 15,
        PQ_CODE = 16,            // "代码"
        PQ_UNIT = 17,            // "合约单位"
        PQ_EXPIRE = 18,          // "期权到期日"
        PQ_STYLE = 19,           // "行权方式"
        PQ_LAST_EXERCISE = 20,   // "行权终止日"
    };

    // The four views of the tool bar's switch, by button id.
    enum EView {
        PQV_QUOTE = 0,   // "行情": sub-indexes 0 to 5
        PQV_TARGET = 1,  // "指标": 6 to 10
        PQV_RISK = 2,    // "风险": 11 to 15
        PQV_INFO = 3,    // "信息": 16 to 20
        PQV_COUNT = 4,
    };

    static int columnCount(int monthCount) { return monthCount * kMonthColumns + 1; }
    // Month and sub-index of a column; -1 for the strike column and below.
    static int monthOf(int column) { return column > 0 ? (column - 1) / kMonthColumns : -1; }
    static int subIndexOf(int column) { return column > 0 ? (column - 1) % kMonthColumns : -1; }
    static int columnOf(int month, int subIndex) { return month * kMonthColumns + subIndex + 1; }

    // "行权价格" for column 0, the sub-index's header for the others (the same in every month).
    static const QString& header(int column);
    // QVariant::Type of the column: String for the strike, the code and the style, Int for
    // counts and dates, Double for the rest.
    static int columnType(int column);
    // The view that shows a sub-index; -1 for none.
    static int viewOfSubIndex(int subIndex);
    // Whether a view shows a column; the strike column is in every view.
    static bool visibleInView(int column, int view);
    // The exercise style column keeps the normal weight; every other column is bold.
    static bool boldColumn(int column) { return subIndexOf(column) != PQ_STYLE; }
    // The sub-indexes whose change flashes: the last price, the ratio, the change, the bid.
    static bool flashSubIndex(int subIndex);
    // The row key of an option: the exchange's strike text, with "A" after an
    // adjusted contract, whose strike text may equal a standard contract's: the
    // two keep rows of their own rather than overwrite each other's cells.
    static QString rowKey(const QString& strikeText, bool adjusted);
    // The order of two row keys by the number of the strike, a standard
    // contract before an adjusted one of the same strike: <0, 0, >0.
    static int compareRowKeys(const QString& left, const QString& right);
    // The text of a month's cell of the header strip: "2026年12月(33天)" for month
    // text "20261223" and 33 remaining days.
    static QString monthCellText(const QString& month, int remainDays);
};

}  // namespace TC
