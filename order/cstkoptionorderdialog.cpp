#include "order/cstkoptionorderdialog.h"

#include "order/ccolorkeybutton.h"
#include "order/corderformhelper.h"
#include "order/cstkoptionorderwidget.h"
#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/cframesplitterline.h"
#include "toolkit/cquotesgraphwidget.h"
#include "toolkit/cuiresource.h"

#include <QHBoxLayout>
#include <QThread>
#include <QVBoxLayout>

#include <map>
#include <string>
#include <vector>

namespace TC {

CStkOptionOrderDialog::CStkOptionOrderDialog(int count, QWidget* parent)
    : WG::CCommonDialog(parent), legCount(count > 1 ? 2 : 1)
{
    setTitle(QStringLiteral("快速下单"));
    setWindowFlags(windowFlags() | Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    createUi();
}

CStkOptionOrderDialog::~CStkOptionOrderDialog()
{
    // First of all: once the handles are dropped no callback reaches this object.
    firstRequest.reset();
    secondRequest.reset();
}

void CStkOptionOrderDialog::createUi()
{
    auto* body = new QWidget(this);
    auto* outer = new QVBoxLayout(body);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    auto* top = new QHBoxLayout();
    top->setContentsMargins(0, 0, 0, 0);
    top->setSpacing(0);

    WG::CUiResource* resources = WG::CUiResource::get();
    const QSize pictureSize(resources->getSize(QStringLiteral("tc_siz_code_quotes_width")),
                            resources->getSize(QStringLiteral("tc_siz_code_quotes_height")));
    const auto picture = [&]() {
        auto* quotes = new CQuotesGraphWidget(body);
        quotes->setFixedSize(pictureSize);
        return quotes;
    };
    firstWidget = new CStkOptionOrderWidget(body);
    firstQuotes = picture();
    if (legCount == 1) {
        top->addWidget(firstWidget, 0, Qt::AlignTop);
        top->addWidget(firstQuotes, 0, Qt::AlignTop);
    } else {
        secondWidget = new CStkOptionOrderWidget(body);
        secondQuotes = picture();
        top->addWidget(firstQuotes, 0, Qt::AlignTop);
        top->addWidget(firstWidget, 0, Qt::AlignTop);
        auto* line = new WG::CFrameSplitterLine(QStringLiteral("clr_operation_frame_line_color"), body, Qt::Vertical);
        line->setFixedWidth(1);
        top->addWidget(line);
        top->addWidget(secondWidget, 0, Qt::AlignTop);
        top->addWidget(secondQuotes, 0, Qt::AlignTop);
    }
    outer->addLayout(top);

    outer->addWidget(new WG::CFrameSplitterLine(QStringLiteral("clr_operation_frame_line_color"), body));
    outer->addWidget(COrderFormHelper::makeButtonRow(body, ID_CANCEL_BUTTON, ID_ORDER_BUTTON, cancelButton, orderButton));
    setInnerWidget(body);
    adjustSize();
}

void CStkOptionOrderDialog::setLegs(const QList<CStrategyStockData>& legs)
{
    if (legs.isEmpty()) {
        return;
    }
    const auto subscribe = [this](const QString& code) {
        return CQuoteRequest::makeHandicapRequest(
            code, [this](boost::shared_ptr<CPriceData>& data) { onPrice(data); }, static_cast<ESubscribeType>(0));
    };
    firstWidget->setLeg(legs.at(0));
    firstQuotes->setStockCode(legs.at(0).code);
    firstRequest = subscribe(legs.at(0).code);
    if (legs.size() > 1 && secondWidget != nullptr) {
        secondWidget->setLeg(legs.at(1));
        secondQuotes->setStockCode(legs.at(1).code);
        secondRequest = subscribe(legs.at(1).code);
    }
    adjustSize();
}

// ---- quotes from other threads ----

void CStkOptionOrderDialog::onPrice(boost::shared_ptr<TC::CPriceData>& price)
{
    if (!price) {
        return;
    }
    if (QThread::currentThread() == thread()) {
        applyPrice(price);
        return;
    }
    {
        std::lock_guard<std::mutex> lock(pendingMutex);
        pendingPrices.insert(QString::fromStdString(utils::vqStockKey(price->market, price->code)), price);
        if (pendingPosted) {
            return;
        }
        pendingPosted = true;
    }
    QMetaObject::invokeMethod(this, "applyPending", Qt::QueuedConnection);
}

void CStkOptionOrderDialog::applyPending()
{
    QMap<QString, boost::shared_ptr<TC::CPriceData>> prices;
    {
        std::lock_guard<std::mutex> lock(pendingMutex);
        prices.swap(pendingPrices);
        pendingPosted = false;
    }
    for (const boost::shared_ptr<TC::CPriceData>& price : prices) {
        applyPrice(price);
    }
}

void CStkOptionOrderDialog::applyPrice(const boost::shared_ptr<TC::CPriceData>& price)
{
    const QString key = QString::fromStdString(utils::vqStockKey(price->market, price->code));
    const std::pair<CStkOptionOrderWidget*, CQuotesGraphWidget*> legs[] = {{firstWidget, firstQuotes},
                                                                           {secondWidget, secondQuotes}};
    for (const auto& leg : legs) {
        if (leg.first != nullptr && leg.first->getStockCode() == key) {
            leg.first->updatePrice(price);
            if (leg.second != nullptr) {
                leg.second->parsePrice(price);
            }
        }
    }
    emit sigPriceApplied(key);
}

// ---- events ----

bool CStkOptionOrderDialog::handleEvent(int event, int id, int arg, QString text, void* data)
{
    if (event == WG::UE_BUTTON_CLICKED && id == ID_ORDER_BUTTON) {
        confirm();
        return true;
    }
    if (event == WG::UE_BUTTON_CLICKED && id == ID_CANCEL_BUTTON) {
        reject();
        return true;
    }
    return WG::CCommonDialog::handleEvent(event, id, arg, text, data);
}

void CStkOptionOrderDialog::confirm()
{
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    std::map<std::string, double> weights;
    QString error;
    QString remark;
    // Both legs are checked before anything goes: a failing leg sends nothing.
    CStkOptionOrderWidget* widgets[] = {firstWidget, legCount > 1 ? secondWidget : nullptr};
    for (CStkOptionOrderWidget* widget : widgets) {
        if (widget == nullptr) {
            continue;
        }
        if (!widget->validate()) {
            return;
        }
        boost::shared_ptr<nqservice::CCodeOrderParam> param;
        if (!widget->fillStockParams(param, error, remark)) {
            if (!error.isEmpty()) {
                COrderFormHelper::showMessage(error);
            }
            return;
        }
        params.push_back(param);
        weights[widget->currentAccount().toStdString()] = 1.0;
    }
    COrderFormHelper::sendStockOptionCommand(params, weights, remark, this, "TC::CStkOptionOrderDialog::handleEvent");
    accept();
}

}  // namespace TC
