// The rows of the price quote table, one per strike in insertion order, and
// its columns: the strike, then a block of 21 per expiry month.
#pragma once

#include "positions/chpfpricequotedata.h"
#include "toolkit/ibasehpftablemodel.h"

namespace TC {

class CHpfPriceQuoteDataModel : public WG::IBaseHpfTableModel {
public:
    CHpfPriceQuoteDataModel();
    ~CHpfPriceQuoteDataModel() override;

    int columnCount() const override;
    QString columnHeader(int column) const override;
    int columnType(int column) const override;
    QString getStatDispalyQString(int column) const override;
    bool columnFlashChange(int column) const override;
    const QColor* getBackgroundColor(int column) const override;
    int columnFlag(int column) const override;
    // Strikes in numeric order, whatever their text: "10.0000" after "9.5000", an
    // adjusted contract's "2.9500A" after "2.9500".
    int customSort(const WG::IBaseHpfTableDataPtr& left, const WG::IBaseHpfTableDataPtr& right) const override;

    // The row of a strike key, null when none.
    CHpfPriceQuoteDataPtr rowOfStrike(const QString& key) const;

    int monthCount = 0;
};

}  // namespace TC
