// The values of one row of the price quote table: one strike, with per expiry
// month the option's quote, computed figures and instrument facts, and what a
// cell shows of them. Vectors are indexed by month directly, so a cell costs no
// lookup by key; a cell's text is its only allocation. Knows no widget: colours
// are resource keys that the table resolves.
#pragma once

#include <QString>
#include <QVector>

#include <map>

namespace TC {

class CPriceQuoteRow {
public:
    // Every vector gets monthCount entries: doubles and integers absent, texts empty.
    CPriceQuoteRow(const QString& strikeKey, int monthCount);
    virtual ~CPriceQuoteRow();

    QString strikeKey;
    QVector<QString> stockKeys;  // empty: the month has no option of this strike
    QVector<QString> exerciseStyles;
    QVector<double> lastPrices;
    QVector<double> changeRatios;
    QVector<double> changeAmounts;
    QVector<double> bidPrices;
    QVector<double> intrinsicValues;
    QVector<double> premiumRates;
    QVector<double> leverages;
    QVector<double> impliedVolatilities;
    QVector<double> historicalVolatility;
    QVector<double> deltas;
    QVector<double> gammas;
    QVector<double> thetas;
    QVector<double> vegas;
    QVector<double> rhos;
    QVector<double> preCloses;  // the reference of the bid's colour
    QVector<int> volumes;
    QVector<int> openInterests;
    QVector<int> contractUnits;
    QVector<int> expireDate;
    QVector<int> lastExerciseDates;
    // Column to the utils::clockMSec() time of its last change; a cell flashes while it is here.
    std::map<int, double> flashStamps;
    // One flag per row: the month a quote updated last decides it.
    bool inTheMoney = false;
    int monthCount = 0;

    // What a cell shows; formatFlags carries the user's digit grouping.
    QString cellText(int column, int formatFlags) const;
    // The key for column 0, the stock key and the exercise style; "" elsewhere.
    QString cellTextValue(int column) const;
    int cellInt(int column) const;        // absent outside the integer columns
    double cellDouble(int column) const;  // absent outside the double columns
    // Resource keys; they are long-lived strings, so a painter resolves them without a copy.
    const QString& textColorKey(int column) const;
    // Null: no colour of the row's own (the strike, a month out of range or without this strike).
    const QString* backgroundKey(int column) const;
    bool cellFlashes(int column) const { return flashStamps.count(column) != 0; }
    // Whether the month exists for this row and has an instrument.
    bool hasInstrument(int month) const;

private:
    bool inRange(int month) const { return month >= 0 && month < monthCount && month < lastPrices.size(); }
    const QVector<double>* doubles(int subIndex) const;
    const QVector<int>* ints(int subIndex) const;
};

}  // namespace TC
