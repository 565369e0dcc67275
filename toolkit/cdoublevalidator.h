// Input of a decimal number between two bounds with at most a number of
// decimals: rejects what can never become valid, lets a value below the bottom
// through as intermediate while it is typed, and clamps it on fixup.
#pragma once

#include <QValidator>

namespace WG {

class CDoubleValidator : public QValidator {
    Q_OBJECT
public:
    CDoubleValidator(double bottom, double top, int decimals, QObject* parent);
    ~CDoubleValidator() override;

    State validate(QString& input, int& pos) const override;
    void fixup(QString& input) const override;

    void setRange(double bottom, double top, int decimals);
    double bottom() const { return m_bottom; }
    double top() const { return m_top; }
    int decimals() const { return m_decimals; }

private:
    double m_bottom;
    double m_top;
    int m_decimals;
};

}  // namespace WG
