#include "toolkit/cquotesaddinstrumentwidget.h"

#include "seam/cexchangeclient.h"
#include "seam/uievents.h"
#include "toolkit/clineedit.h"
#include "toolkit/cuiresource.h"

#include <QHBoxLayout>

#include <algorithm>

namespace TC {

namespace {
// Id of the inner field; its own events stay inside this widget.
constexpr int kEditID = -1032;

bool kindFits(nqservice::EInstrumentKind kind, nqservice::EVqTraderType type)
{
    switch (type) {
    case nqservice::VQ_TRADER_TYPE_STOCK_OPTION:
        return kind == nqservice::IK_STOCK_OPTION || kind == nqservice::IK_FUND;
    case nqservice::VQ_TRADER_TYPE_FUTURE_OPTION:
        return kind == nqservice::IK_FUTURE_OPTION || kind == nqservice::IK_FUTURE;
    default:
        return true;
    }
}
}  // namespace

CQuotesAddInstrumentWidget::CQuotesAddInstrumentWidget(int id, QWidget* parent)
    : WG::CEventWidgetT<QWidget>(parent), m_id(id), m_edit(new WG::CLineEdit(kEditID, this, true))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit);
    m_edit->setPlaceholderText(QStringLiteral("输入代码"));
    setFocusProxy(m_edit);
    connect(m_edit, &QLineEdit::returnPressed, this, [this]() { addInstrument(m_edit->text()); });
    connect(m_edit, &QLineEdit::textChanged, this, [this]() { applyLook(); });
    applyLook();
}

CQuotesAddInstrumentWidget::~CQuotesAddInstrumentWidget() = default;

void CQuotesAddInstrumentWidget::setTradeType(nqservice::EVqTraderType type) { m_tradeType = type; }

void CQuotesAddInstrumentWidget::setStockCodeLineEditEmptyHintFontColor(const QString& colorKey)
{
    m_hintColorKey = colorKey;
    applyLook();
}

void CQuotesAddInstrumentWidget::setStockCodeLineEditEmptyHintFontKey(const QString& fontKey)
{
    m_hintFontKey = fontKey;
    applyLook();
}

void CQuotesAddInstrumentWidget::setStcokCodeLineEditTextFontKey(const QString& fontKey)
{
    m_textFontKey = fontKey;
    applyLook();
}

QString CQuotesAddInstrumentWidget::lookUp(const QString& text) const
{
    const QString typed = text.trimmed().toUpper();
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    if (typed.isEmpty() || exchange == nullptr) {
        return QString();
    }
    QStringList candidates;
    if (typed.contains(QLatin1Char('.'))) {
        candidates << typed;
    } else {
        // Markets in the order the trade type makes likely.
        QStringList markets = {QString::fromLatin1(nqservice::kMarketSSE), QString::fromLatin1(nqservice::kMarketSZSE),
                               QString::fromLatin1(nqservice::kMarketDCE), QString::fromLatin1(nqservice::kMarketCZCE)};
        if (m_tradeType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
            std::rotate(markets.begin(), markets.begin() + 2, markets.end());
        }
        // Commodity codes mix cases ("m2601-C-3000"): as typed first, then upper and lower case.
        const QStringList spellings = {text.trimmed(), typed, text.trimmed().toLower()};
        for (const QString& market : markets) {
            for (const QString& spelling : spellings) {
                candidates << QString::fromStdString(utils::vqStockKey(market.toStdString(), spelling.toStdString()));
            }
        }
    }
    for (const QString& key : candidates) {
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = exchange->getCodeInfo(key);
        if (detail && kindFits(detail->kind, m_tradeType)) {
            return QString::fromStdString(utils::vqStockKey(detail->market, detail->code));
        }
    }
    return QString();
}

QString CQuotesAddInstrumentWidget::addInstrument(const QString& text)
{
    const QString key = lookUp(text);
    m_edit->setInvalid(key.isEmpty() && !text.trimmed().isEmpty());
    if (key.isEmpty()) {
        return key;
    }
    emit sigInstrumentAdded(key);
    deliverEvent(WG::UE_ADD_INSTRUMENT, m_id, 0, key, nullptr);
    return key;
}

void CQuotesAddInstrumentWidget::setCodeText(const QString& text)
{
    const QSignalBlocker blocker(m_edit);
    m_edit->setText(text);
    m_edit->setInvalid(false);
    applyLook();
}

QString CQuotesAddInstrumentWidget::codeText() const { return m_edit->text(); }

bool CQuotesAddInstrumentWidget::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (id == kEditID) {
        if (code == WG::UE_TEXT_CHANGED) {
            m_edit->setInvalid(false);
        }
        return true;
    }
    return WG::CEventWidgetT<QWidget>::handleEvent(code, id, arg, text, data);
}

void CQuotesAddInstrumentWidget::themeChanged()
{
    m_appliedFontKey.clear();
    applyLook();
}

void CQuotesAddInstrumentWidget::applyLook()
{
    // The hint and the typed code may use different fonts: the field wears the one that shows.
    const QString fontKey = m_edit->text().isEmpty() ? m_hintFontKey : m_textFontKey;
    if (fontKey != m_appliedFontKey) {
        m_appliedFontKey = fontKey;
        m_edit->setFontKey(fontKey);
    }
    m_edit->setPlaceholderColorKey(m_hintColorKey);
}

}  // namespace TC
