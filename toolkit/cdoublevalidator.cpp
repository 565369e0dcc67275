#include "toolkit/cdoublevalidator.h"

#include <QRegularExpression>

namespace WG {

CDoubleValidator::CDoubleValidator(double bottom, double top, int decimals, QObject* parent)
    : QValidator(parent), m_bottom(qMin(bottom, top)), m_top(qMax(bottom, top)), m_decimals(qMax(0, decimals))
{
}

CDoubleValidator::~CDoubleValidator() = default;

void CDoubleValidator::setRange(double bottom, double top, int decimals)
{
    m_bottom = qMin(bottom, top);
    m_top = qMax(bottom, top);
    m_decimals = qMax(0, decimals);
    emit changed();
}

QValidator::State CDoubleValidator::validate(QString& input, int&) const
{
    const QString text = input.trimmed();
    if (text.isEmpty()) {
        return Intermediate;
    }
    static const QRegularExpression shape(QStringLiteral("^-?\\d*(\\.(\\d*))?$"));
    const QRegularExpressionMatch match = shape.match(text);
    if (!match.hasMatch()) {
        return Invalid;
    }
    const bool negative = text.startsWith(QLatin1Char('-'));
    if (negative && m_bottom >= 0.0) {
        return Invalid;
    }
    if (match.captured(2).size() > m_decimals || (m_decimals == 0 && text.contains(QLatin1Char('.')))) {
        return Invalid;
    }
    if (text == QLatin1String("-") || text == QLatin1String(".") || text == QLatin1String("-.")) {
        return Intermediate;
    }
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok) {
        return Intermediate;
    }
    // More digits only move a value away from zero: beyond the bound on its own side it stays invalid.
    if ((!negative && value > m_top && m_top >= 0.0) || (negative && value < m_bottom && m_bottom <= 0.0)) {
        return Invalid;
    }
    if (value < m_bottom || value > m_top) {
        return Intermediate;
    }
    return Acceptable;
}

void CDoubleValidator::fixup(QString& input) const
{
    bool ok = false;
    const double value = input.trimmed().toDouble(&ok);
    if (!ok) {
        return;
    }
    input = QString::number(qBound(m_bottom, value, m_top), 'f', m_decimals);
}

}  // namespace WG
