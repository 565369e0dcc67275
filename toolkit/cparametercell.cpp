#include "toolkit/cparametercell.h"

#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/cuiresource.h"

#include <QDoubleValidator>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace WG {

CParameterCell::CParameterCell(int id, const QString& name, const QString& unit, QWidget* parent)
    : CEventWidgetT<QWidget>(parent), m_id(id), m_unit(unit)
{
    if (!unit.isEmpty()) {
        m_units << unit;
    }
    build(name);
}

CParameterCell::CParameterCell(int id, const QString& name, const QStringList& units, QWidget* parent)
    : CEventWidgetT<QWidget>(parent), m_id(id), m_unit(units.value(0)), m_units(units)
{
    build(name);
}

CParameterCell::~CParameterCell() = default;

void CParameterCell::build(const QString& name)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    m_caption = new QLabel(name, this);
    m_edit = new QLineEdit(this);
    m_edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* arrows = new QVBoxLayout;
    arrows->setContentsMargins(0, 0, 0, 0);
    arrows->setSpacing(0);
    m_up = new QToolButton(this);
    m_down = new QToolButton(this);
    m_up->setArrowType(Qt::UpArrow);
    m_down->setArrowType(Qt::DownArrow);
    for (QToolButton* arrow : {m_up, m_down}) {
        arrow->setFixedSize(14, 11);
        arrow->setAutoRaise(true);
        arrow->setFocusPolicy(Qt::NoFocus);
        arrows->addWidget(arrow);
    }
    layout->addWidget(m_caption);
    layout->addWidget(m_edit, 1);
    layout->addLayout(arrows);
    for (const QString& unit : m_units) {
        auto* button = new QToolButton(this);
        button->setText(unit);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this, [this, unit] { emit sigUnitClicked(unit); });
        m_unitButtons << button;
        layout->addWidget(button);
    }
    connect(m_up, &QToolButton::clicked, this, [this] { stepBy(1); });
    connect(m_down, &QToolButton::clicked, this, [this] { stepBy(-1); });
    connect(m_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
        emit sigValueChanged();
        deliverEvent(UE_TEXT_CHANGED, m_id, 0, text, nullptr);
    });
    connect(m_edit, &QLineEdit::editingFinished, this,
            [this] { deliverEvent(UE_VALUE_COMMITTED, m_id, 0, m_edit->text(), nullptr); });
    applyRule();
    applyStyle();
}

int CParameterCell::decimalsOfStep(double step)
{
    int decimals = 0;
    while (decimals < 8 && std::fabs(step * std::pow(10.0, decimals) - std::round(step * std::pow(10.0, decimals))) > 1e-9) {
        ++decimals;
    }
    return decimals;
}

void CParameterCell::setIntValidator(const QString& unit, int minimum, int maximum, int step)
{
    UnitRule& rule = m_rules[unit];
    rule.integer = true;
    rule.minimum = std::min(minimum, maximum);
    rule.maximum = std::max(minimum, maximum);
    rule.step = step > 0 ? step : 1;
    rule.decimals = 0;
    rule.hasRange = true;
    if (unit == m_unit) {
        applyRule();
    }
}

void CParameterCell::setDoubleValidator(const QString& unit, double minimum, double maximum, double step)
{
    UnitRule& rule = m_rules[unit];
    rule.integer = false;
    rule.minimum = std::min(minimum, maximum);
    rule.maximum = std::max(minimum, maximum);
    rule.step = step > 0.0 ? step : 0.01;
    rule.decimals = decimalsOfStep(rule.step);
    rule.hasRange = true;
    if (unit == m_unit) {
        applyRule();
    }
}

void CParameterCell::setSpin(const QString& unit, QPair<bool, double> spin)
{
    UnitRule& rule = m_rules[unit];
    rule.spin = spin.first;
    rule.spinStep = spin.second > 0.0 ? spin.second : rule.step;
    if (unit == m_unit) {
        applyRule();
    }
}

void CParameterCell::setCellName(const QString& name) { m_caption->setText(name); }

QString CParameterCell::cellName() const { return m_caption->text(); }

void CParameterCell::setUnit(const QString& unit)
{
    if (!m_units.contains(unit)) {
        return;
    }
    m_unit = unit;
    applyRule();
}

void CParameterCell::applyRule()
{
    const UnitRule current = rule();
    delete m_validator;
    m_validator = nullptr;
    if (current.hasRange) {
        if (current.integer) {
            m_validator = new QIntValidator(static_cast<int>(current.minimum), static_cast<int>(current.maximum), this);
        } else {
            auto* validator = new QDoubleValidator(current.minimum, current.maximum, current.decimals, this);
            validator->setNotation(QDoubleValidator::StandardNotation);
            validator->setLocale(QLocale::c());
            m_validator = validator;
        }
    }
    m_edit->setValidator(m_validator);
    m_up->setVisible(current.spin);
    m_down->setVisible(current.spin);
    for (QToolButton* button : m_unitButtons) {
        button->setChecked(button->text() == m_unit);
    }
}

bool CParameterCell::hasAcceptableInput() const { return m_edit->hasAcceptableInput(); }

QString CParameterCell::text() const { return m_edit->text(); }

int CParameterCell::toInt() const
{
    bool ok = false;
    const int value = m_edit->text().trimmed().toInt(&ok);
    return ok ? value : utils::kAbsentInt;
}

long long CParameterCell::toLongLong() const
{
    bool ok = false;
    const long long value = m_edit->text().trimmed().toLongLong(&ok);
    return ok ? value : utils::kAbsentLongLong;
}

double CParameterCell::toDouble() const
{
    bool ok = false;
    const double value = m_edit->text().trimmed().toDouble(&ok);
    return ok && utils::isUsable(value) ? value : utils::kAbsentDouble;
}

void CParameterCell::setInt(int value)
{
    m_edit->setText(utils::isAbsent(value) ? QString() : QString::number(value));
}

void CParameterCell::setLongLong(long long value)
{
    m_edit->setText(utils::isAbsent(value) ? QString() : QString::number(value));
}

void CParameterCell::setDouble(double value)
{
    if (!utils::isUsable(value)) {
        m_edit->clear();
        return;
    }
    const UnitRule current = rule();
    m_edit->setText(current.integer && current.hasRange ? QString::number(std::llround(value))
                                                        : QString::number(value, 'f', current.decimals));
}

void CParameterCell::setString(const QString& text) { m_edit->setText(text); }

bool CParameterCell::stepBy(int steps)
{
    const UnitRule current = rule();
    if (!current.spin || steps == 0) {
        return false;
    }
    double value = utils::isAbsent(toDouble()) ? (current.hasRange ? current.minimum : 0.0) : toDouble();
    value += steps * current.spinStep;
    if (current.hasRange) {
        value = std::clamp(value, current.minimum, current.maximum);
    }
    if (current.integer) {
        m_edit->setText(QString::number(std::llround(value)));
    } else {
        m_edit->setText(QString::number(value, 'f', std::max(current.decimals, decimalsOfStep(current.spinStep))));
    }
    emit sigValueChanged();
    deliverEvent(UE_SPIN_CHANGED, m_id, steps, m_edit->text(), nullptr);
    return true;
}

void CParameterCell::applyStyle()
{
    const CUiResource* resource = CUiResource::get();
    const QString text = resource->getColor(QStringLiteral("clr_text_default"))->name();
    const QString unit = resource->getColor(QStringLiteral("clr_param_cell_unit"))->name();
    const QString background = resource->getColor(QStringLiteral("clr_param_cell_background"))->name();
    const QString border = resource->getColor(QStringLiteral("clr_param_cell_border"))->name();
    const QString active = resource->getColor(QStringLiteral("clr_param_table_order_mode_active"))->name();
    const QFont& font = *resource->getFont(QStringLiteral("fnt_default_normal_fix"));
    setFont(font);
    m_caption->setStyleSheet(QStringLiteral("color:%1;").arg(unit));
    m_edit->setStyleSheet(QStringLiteral("QLineEdit{color:%1;background:%2;border:1px solid %3;padding:0 3px;}")
                              .arg(text, background, border));
    for (QToolButton* button : m_unitButtons) {
        button->setStyleSheet(QStringLiteral("QToolButton{color:%1;border:none;padding:0 2px;}"
                                             "QToolButton:checked{color:%2;}")
                                  .arg(unit, active));
    }
}

void CParameterCell::themeChanged() { applyStyle(); }

}  // namespace WG
