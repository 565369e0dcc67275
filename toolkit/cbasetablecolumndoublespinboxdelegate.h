// A column of numbers that the user steps with the arrows at the cell's right
// or types in a spin box that opens over the cell. A new value delivers
// UE_DELEGATE_SPIN_CHANGED (237) with the column as id and the row's key as text.
#pragma once

#include "toolkit/cbasetablecolumnwidgetdelegate.h"

#include <QDoubleSpinBox>
#include <QPointer>

namespace WG {

class CBaseTableColumnDoubleSpinBoxDelegate : public CBaseTableColumnWidgetDelegate {
    Q_OBJECT
public:
    CBaseTableColumnDoubleSpinBoxDelegate(int column, CEventDeliverer* deliverer);
    ~CBaseTableColumnDoubleSpinBoxDelegate() override;

    void setDoubleSpinBoxRange(double minimum, double maximum);
    void setDoubleSpinBoxSingelStep(double step);
    void setDoubleSpinBoxDecimals(int decimals);
    // The text is read as the value; a text that is no number leaves the value alone.
    void setItemText(const std::string& key, const QString& text, EUpdateType update = UT_UPDATE);
    void setItemValue(const std::string& key, double value, bool notify = false);
    double itemValue(const std::string& key) const;  // the absent marker when none
    QDoubleSpinBox* editor() const { return m_editor; }

    void paintCell(QPainter* painter, const std::string& key, const CCellPaintContext& context) const override;
    bool mousePress(const std::string& key, const QRect& cellRect, const QPoint& position) override;
    QString itemText(const std::string& key) const override;

signals:
    void sigValueChanged(const QString& key, double value);

private:
    static constexpr int kArrowWidth = 12;
    double clampValue(double value) const;

    double m_minimum = 0.0;
    double m_maximum = 100.0;
    double m_step = 1.0;
    int m_decimals = 2;
    QPointer<QDoubleSpinBox> m_editor;
};

}  // namespace WG
