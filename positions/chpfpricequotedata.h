// One row of the price quote table as the toolkit's high-performance table
// asks it: the row's values and cell texts come from CPriceQuoteRow, colours
// are resolved from their resource keys without copying a key.
#pragma once

#include "positions/cpricequoterow.h"
#include "toolkit/ibasehpftabledata.h"

#include <boost/shared_ptr.hpp>

namespace TC {

class CHpfPriceQuoteData : public WG::IBaseHpfTableData, public CPriceQuoteRow {
public:
    CHpfPriceQuoteData(const QString& strikeKey, int monthCount);
    ~CHpfPriceQuoteData() override;

    QString displayText(int column) const override;
    QString textValue(int column) const override;
    int intValue(int column) const override;
    double doubleValue(int column) const override;
    long long longLongValue(int column) const override;
    const QColor* textColor(int column) const override;
    std::string keyString() const override;
    const QColor* getBackgroundColor(int column) const override;
    bool isFlashChange(int column) const override;
};

typedef boost::shared_ptr<CHpfPriceQuoteData> CHpfPriceQuoteDataPtr;

}  // namespace TC
