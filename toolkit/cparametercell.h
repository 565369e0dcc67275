// One labelled number field of an order form: caption, value, spin arrows and
// one or more units. Each unit has its own validator (integer or double, with
// range and step) and spin step; a click on a unit emits sigUnitClicked, and
// the owner decides whether to switch with setUnit. Text changes deliver
// UE_TEXT_CHANGED, Return or leaving the field UE_VALUE_COMMITTED, a spin UE_SPIN_CHANGED.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

class QLabel;
class QLineEdit;
class QToolButton;
class QValidator;

namespace WG {

class CParameterCell : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    // unit: the one unit of the cell ("" for none).
    CParameterCell(int id, const QString& name, const QString& unit, QWidget* parent);
    // units: the units the user can choose among; the first is current.
    CParameterCell(int id, const QString& name, const QStringList& units, QWidget* parent);
    ~CParameterCell() override;

    int id() const { return m_id; }
    void setIntValidator(const QString& unit, int minimum, int maximum, int step);
    void setDoubleValidator(const QString& unit, double minimum, double maximum, double step);
    // first: whether the arrows step the value; second: the step.
    void setSpin(const QString& unit, QPair<bool, double> spin);
    void setCellName(const QString& name);
    QString cellName() const;
    void setUnit(const QString& unit);
    QString unit() const { return m_unit; }
    QStringList units() const { return m_units; }

    // The absent markers when the text holds no number.
    int toInt() const;
    long long toLongLong() const;
    double toDouble() const;
    QString text() const;
    void setInt(int value);
    void setLongLong(long long value);
    void setDouble(double value);
    void setString(const QString& text);
    // One spin step up (positive) or down; false when the unit has no spin.
    bool stepBy(int steps);
    // Whether the text is acceptable for the current unit.
    bool hasAcceptableInput() const;
    QLineEdit* lineEdit() const { return m_edit; }

    void themeChanged() override;

signals:
    void sigUnitClicked(QString unit);
    void sigValueChanged();

private:
    struct UnitRule {
        bool integer = true;
        double minimum = 0.0;
        double maximum = 0.0;
        double step = 1.0;
        int decimals = 0;
        bool hasRange = false;
        bool spin = false;
        double spinStep = 1.0;
    };
    void build(const QString& name);
    void applyRule();
    void applyStyle();
    UnitRule rule() const { return m_rules.value(m_unit); }
    static int decimalsOfStep(double step);

    int m_id;
    QString m_unit;
    QStringList m_units;
    QMap<QString, UnitRule> m_rules;
    QLabel* m_caption = nullptr;
    QLineEdit* m_edit = nullptr;
    QToolButton* m_up = nullptr;
    QToolButton* m_down = nullptr;
    QList<QToolButton*> m_unitButtons;
    QValidator* m_validator = nullptr;
};

}  // namespace WG
