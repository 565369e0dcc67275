// The desk's settings of the limit per order: the most contracts of one limit
// order and of one market order, and whether a larger order is offered to be
// split. Writes the user's permission record, which the order flow reads at
// every order; it does not touch orders already sent.
#pragma once

#include <QDialog>

class QCheckBox;
class QSpinBox;

namespace desk {

class COrderLimitsDialog : public QDialog {
    Q_OBJECT
public:
    // Shows the user's present limits.
    explicit COrderLimitsDialog(QWidget* parent = nullptr);

    int fixPriceLimit() const;
    void setFixPriceLimit(int limit);
    bool fixPriceSplit() const;
    void setFixPriceSplit(bool allowed);
    int marketPriceLimit() const;
    void setMarketPriceLimit(int limit);
    bool marketPriceSplit() const;
    void setMarketPriceSplit(bool allowed);

    // Writes the limits into the user's permissions and has them saved.
    // False when no user settings are installed.
    bool apply();

public slots:
    void accept() override;

private:
    QSpinBox* fixLimit = nullptr;
    QCheckBox* fixSplit = nullptr;
    QSpinBox* marketLimit = nullptr;
    QCheckBox* marketSplit = nullptr;
};

}  // namespace desk
