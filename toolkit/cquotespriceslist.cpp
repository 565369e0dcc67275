#include "toolkit/cquotespriceslist.h"

#include "seam/cexchangeclient.h"
#include "seam/stockcolor.h"
#include "seam/uievents.h"
#include "toolkit/cquotesaddinstrumentwidget.h"
#include "toolkit/cuiresource.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace TC {

namespace {
const char* const kLabels[CQuotesPricesList::kLevelRows] = {"卖五", "卖四", "卖三", "卖二", "卖一",
                                                             "买一", "买二", "买三", "买四", "买五"};
constexpr int kMargin = 4;
constexpr int kCancelWidth = 22;

// Decimals that show a price tick exactly: 0.001 gives 3, 0.0001 gives 4.
int decimalsOfTick(double tick, int fallback)
{
    if (!utils::isUsable(tick) || tick <= 0.0) {
        return fallback;
    }
    for (int decimals = 0; decimals <= 4; ++decimals) {
        const double scaled = tick * std::pow(10.0, decimals);
        if (std::fabs(scaled - std::round(scaled)) < 1e-6 * std::max(1.0, scaled)) {
            return decimals;
        }
    }
    return 4;
}
}  // namespace

CQuotesPricesList::CQuotesPricesList(EOpParamWidgetID widgetID, QWidget* parent)
    : WG::CEventWidgetT<QWidget>(parent), m_widgetID(widgetID), m_selectCode(new CQuotesAddInstrumentWidget(widgetID, this))
{
    setMouseTracking(true);
    m_selectCode->setTradeType(m_tradeType);
    m_selectCode->setGeometry(kMargin, kMargin, 120, 22);
    setMinimumWidth(150);
}

CQuotesPricesList::~CQuotesPricesList() = default;

void CQuotesPricesList::setStockCode(const QString& key)
{
    m_stockCode = key;
    m_price.reset();
    m_name.clear();
    m_decimals = m_tradeType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION ? 4 : 2;
    std::string market;
    std::string code;
    if (utils::splitStockKey(key.toStdString(), market, code)) {
        m_selectCode->setCodeText(QString::fromStdString(code));
    } else {
        m_selectCode->setCodeText(key);
    }
    if (CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance()) {
        if (const auto detail = exchange->getCodeInfo(key)) {
            m_name = QString::fromStdString(detail->name);
            m_decimals = decimalsOfTick(detail->priceTick, m_decimals);
        }
    }
    update();
}

void CQuotesPricesList::parsePrice(const boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price || m_stockCode.isEmpty()) {
        return;
    }
    if (QString::fromStdString(utils::vqStockKey(price->market, price->code)) != m_stockCode) {
        return;
    }
    m_price = price;
    update();
}

void CQuotesPricesList::setTradeType(nqservice::EVqTraderType type)
{
    m_tradeType = type;
    m_selectCode->setTradeType(type);
}

void CQuotesPricesList::setShowCancelOrder(bool show)
{
    m_showCancel = show;
    update();
}

int CQuotesPricesList::decimals() const { return m_decimals; }

QString CQuotesPricesList::levelLabel(int row) const
{
    return row >= 0 && row < kLevelRows ? QString::fromUtf8(kLabels[row]) : QString();
}

double CQuotesPricesList::levelPrice(int row) const
{
    if (!m_price || row < 0 || row >= kLevelRows) {
        return utils::kAbsentDouble;
    }
    return row < 5 ? m_price->askPrice(5 - row) : m_price->bidPrice(row - 4);
}

int CQuotesPricesList::levelVolume(int row) const
{
    if (!m_price || row < 0 || row >= kLevelRows) {
        return 0;
    }
    return row < 5 ? m_price->askVolume(5 - row) : m_price->bidVolume(row - 4);
}

QString CQuotesPricesList::levelPriceText(int row) const
{
    const double price = levelPrice(row);
    return utils::isUsable(price) ? QString::number(price, 'f', m_decimals) : QStringLiteral("--");
}

QString CQuotesPricesList::levelColorKey(int row) const
{
    const double reference = m_price ? m_price->preClose : utils::kAbsentDouble;
    return QString::fromLatin1(getStockColorKey(levelPrice(row), reference));
}

int CQuotesPricesList::rowHeight() const { return WG::CUiResource::get()->getSize(QStringLiteral("tc_siz_quotes_row_height")); }

int CQuotesPricesList::headerHeight() const { return 22 + 2 * kMargin + rowHeight(); }

int CQuotesPricesList::levelsTop() const { return headerHeight(); }

QRect CQuotesPricesList::levelRect(int row) const
{
    if (row < 0 || row >= kLevelRows) {
        return QRect();
    }
    const int gap = row >= 5 ? 3 : 0;  // a gap between the ask and the bid side
    return QRect(0, levelsTop() + row * rowHeight() + gap, width(), rowHeight());
}

int CQuotesPricesList::rowAt(const QPoint& pos) const
{
    for (int row = 0; row < kLevelRows; ++row) {
        if (levelRect(row).contains(pos)) {
            return row;
        }
    }
    return -1;
}

QSize CQuotesPricesList::sizeHint() const
{
    return QSize(180, levelsTop() + kLevelRows * rowHeight() + 3 + kMargin);
}

void CQuotesPricesList::paintEvent(QPaintEvent*)
{
    WG::CUiResource* res = WG::CUiResource::get();
    QPainter painter(this);
    painter.fillRect(rect(), *res->getColor(QStringLiteral("clr_table_background")));

    const QFont normal = *res->getFont(QStringLiteral("fnt_default_normal_fix"));
    const QFont heavy = *res->getFont(QStringLiteral("fnt_default_normal_heavy_fix"));
    const double preClose = m_price ? m_price->preClose : utils::kAbsentDouble;

    // Header: name, last price and change against the previous close.
    const QRect header(kMargin, 22 + 2 * kMargin, width() - 2 * kMargin, rowHeight());
    painter.setFont(normal);
    painter.setPen(*res->getColor(QStringLiteral("clr_opselectcodewidget_color")));
    painter.drawText(header, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(m_name.isEmpty() ? m_stockCode : m_name, Qt::ElideRight, header.width() / 2));
    if (m_price && utils::isUsable(m_price->lastPrice)) {
        QString change;
        if (utils::isUsable(preClose) && std::fabs(preClose) > utils::kPriceTolerance) {
            change = QString::asprintf("%+.2f%%", (m_price->lastPrice - preClose) / preClose * 100.0);
        }
        painter.setFont(heavy);
        painter.setPen(*res->getColor(QString::fromLatin1(getStockColorKey(m_price->lastPrice, preClose))));
        painter.drawText(header, Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(m_price->lastPrice, 'f', m_decimals) + QStringLiteral("  ") + change);
    }
    painter.fillRect(QRect(0, levelsTop() - 2, width(), 1), *res->getColor(QStringLiteral("clr_table_split_line")));

    const int labelWidth = 34;
    const int cancelWidth = m_showCancel ? kCancelWidth : 0;
    for (int row = 0; row < kLevelRows; ++row) {
        const QRect line = levelRect(row);
        painter.fillRect(line, *res->getColor(row < 5 ? QStringLiteral("clr_quotes_ask_background")
                                                      : QStringLiteral("clr_quotes_bid_background")));
        if (row == m_hoverRow) {
            painter.fillRect(line, *res->getColor(QStringLiteral("clr_table_background_selected")));
        }
        const QRect body = line.adjusted(kMargin, 0, -kMargin - cancelWidth, 0);
        const int priceRight = body.left() + labelWidth + (body.width() - labelWidth) * 55 / 100;
        painter.setFont(normal);
        painter.setPen(*res->getColor(QStringLiteral("clr_quotes_level_label")));
        painter.drawText(QRect(body.left(), body.top(), labelWidth, body.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         levelLabel(row));
        const bool has = utils::isUsable(levelPrice(row));
        painter.setPen(*res->getColor(has ? levelColorKey(row) : QStringLiteral("clr_quotes_level_label")));
        painter.drawText(QRect(body.left() + labelWidth, body.top(), priceRight - body.left() - labelWidth, body.height()),
                         Qt::AlignRight | Qt::AlignVCenter, levelPriceText(row));
        if (has) {
            painter.setPen(*res->getColor(QStringLiteral("clr_quotes_volume")));
            painter.drawText(QRect(priceRight, body.top(), body.right() - priceRight, body.height()),
                             Qt::AlignRight | Qt::AlignVCenter, QString::number(levelVolume(row)));
        }
        if (m_showCancel) {
            const QRect cancel(line.right() - kMargin - kCancelWidth + 1, line.top() + 2, kCancelWidth - 2, line.height() - 4);
            painter.setPen(*res->getColor(QStringLiteral("clr_edit_border")));
            painter.drawRect(cancel.adjusted(0, 0, -1, -1));
            painter.setPen(*res->getColor(QStringLiteral("clr_button_text")));
            painter.drawText(cancel, Qt::AlignCenter, QStringLiteral("撤"));
        }
    }
    painter.fillRect(QRect(0, levelRect(5).top() - 2, width(), 1), *res->getColor(QStringLiteral("clr_table_split_line")));
}

void CQuotesPricesList::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_selectCode->setGeometry(kMargin, kMargin, width() - 2 * kMargin, 22);
}

void CQuotesPricesList::mouseReleaseEvent(QMouseEvent* event)
{
    const int row = event->button() == Qt::LeftButton ? rowAt(event->pos()) : -1;
    if (row < 0) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    if (m_showCancel && event->pos().x() >= width() - kMargin - kCancelWidth) {
        deliverEvent(WG::UE_BUTTON_CLICKED, kCancelButtonIDBase + row, row, levelPriceText(row), nullptr);
        return;
    }
    if (utils::isUsable(levelPrice(row))) {
        deliverEvent(WG::UE_SET_LIMIT_PRICE, m_widgetID, row, levelPriceText(row), nullptr);
    }
}

void CQuotesPricesList::mouseMoveEvent(QMouseEvent* event)
{
    const int row = rowAt(event->pos());
    if (row != m_hoverRow) {
        m_hoverRow = row;
        update();
    }
    QWidget::mouseMoveEvent(event);
}

void CQuotesPricesList::leaveEvent(QEvent* event)
{
    m_hoverRow = -1;
    update();
    QWidget::leaveEvent(event);
}

}  // namespace TC
