#include "toolkit/cquotesgraphwidget.h"

#include "seam/stockcolor.h"
#include "toolkit/cuiresource.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace TC {

namespace {
// An A-share session has 240 trading minutes; the picture is at least that wide.
constexpr int kSessionMinutes = 240;
// Beyond a day of minutes the oldest points go: the widget never grows without bound.
constexpr int kMaxPoints = 1440;
}  // namespace

CQuotesGraphWidget::CQuotesGraphWidget(QWidget* parent)
    : WG::CEventWidgetT<QWidget>(parent), m_preClose(utils::kAbsentDouble)
{
}

CQuotesGraphWidget::~CQuotesGraphWidget() = default;

void CQuotesGraphWidget::setStockCode(QString key)
{
    m_stockCode = key;
    m_points.clear();
    m_preClose = utils::kAbsentDouble;
    update();
}

void CQuotesGraphWidget::parsePrice(const boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price || m_stockCode.isEmpty() || QString::fromStdString(utils::vqStockKey(price->market, price->code)) != m_stockCode) {
        return;
    }
    if (utils::isUsable(price->preClose)) {
        m_preClose = price->preClose;
    }
    if (!utils::isUsable(price->lastPrice)) {
        return;
    }
    const long long time = price->time > 0 ? price->time : static_cast<long long>(utils::clockMSec());
    m_points[time / 60000] = price->lastPrice;
    while (m_points.size() > kMaxPoints) {
        m_points.erase(m_points.begin());
    }
    update();
}

double CQuotesGraphWidget::lastPrice() const { return m_points.isEmpty() ? utils::kAbsentDouble : m_points.last(); }

QString CQuotesGraphWidget::lineColorKey() const
{
    return QString::fromLatin1(getStockColorKey(lastPrice(), m_preClose));
}

void CQuotesGraphWidget::paintEvent(QPaintEvent*)
{
    WG::CUiResource* res = WG::CUiResource::get();
    QPainter painter(this);
    painter.fillRect(rect(), *res->getColor(QStringLiteral("clr_table_background")));
    const QRectF plot = QRectF(rect()).adjusted(4, 16, -4, -4);
    if (plot.width() < 4 || plot.height() < 4) {
        return;
    }
    // Reference: the previous close, else the first point.
    const double base = utils::isUsable(m_preClose) ? m_preClose : (m_points.isEmpty() ? 0.0 : m_points.first());
    double spread = std::fabs(base) * 0.01;
    for (double value : m_points) {
        spread = std::max(spread, std::fabs(value - base));
    }
    if (spread < utils::kPriceTolerance) {
        spread = 1.0;
    }
    spread *= 1.1;
    auto yOf = [&](double value) { return plot.center().y() - (value - base) / spread * plot.height() / 2.0; };

    painter.setPen(QPen(*res->getColor(QStringLiteral("clr_quotes_graph_grid")), 1));
    for (int i = 1; i < 4; ++i) {
        const double x = plot.left() + plot.width() * i / 4.0;
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
    painter.drawRect(plot);
    painter.setPen(QPen(*res->getColor(QStringLiteral("clr_quotes_graph_base")), 1, Qt::DashLine));
    painter.drawLine(QPointF(plot.left(), plot.center().y()), QPointF(plot.right(), plot.center().y()));

    painter.setFont(*res->getFont(QStringLiteral("fnt_default_normal_fix")));
    if (!m_points.isEmpty()) {
        const int span = std::max(kSessionMinutes, m_points.size() - 1);
        const QColor line = *res->getColor(lineColorKey());
        QPainterPath path;
        int index = 0;
        for (double value : m_points) {
            const QPointF point(plot.left() + plot.width() * index / span, yOf(value));
            if (index == 0) {
                path.moveTo(point);
            } else {
                path.lineTo(point);
            }
            ++index;
        }
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(line, 1.2));
        painter.drawPath(path);
        if (m_points.size() == 1) {
            painter.setBrush(line);
            painter.drawEllipse(path.currentPosition(), 1.5, 1.5);
        }
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(line);
        QString caption = QString::number(lastPrice(), 'f', 4);
        if (utils::isUsable(m_preClose) && std::fabs(m_preClose) > utils::kPriceTolerance) {
            caption += QString::asprintf("  %+.2f%%", (lastPrice() - m_preClose) / m_preClose * 100.0);
        }
        painter.drawText(QRectF(4, 0, width() - 8, 16), Qt::AlignRight | Qt::AlignVCenter, caption);
    }
    painter.setPen(*res->getColor(QStringLiteral("clr_quotes_level_label")));
    painter.drawText(QRectF(4, 0, width() - 8, 16), Qt::AlignLeft | Qt::AlignVCenter, m_stockCode);
}

}  // namespace TC
