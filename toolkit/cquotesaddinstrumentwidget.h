// Code entry of the trade controls: a trader types a code and presses Return;
// the widget looks it up in the exchange's tables and delivers UE_ADD_INSTRUMENT
// with the instrument's stock key. An unknown code delivers nothing and marks
// the field.
#pragma once

#include "seam/tradingenums.h"
#include "toolkit/ceventwidgett.h"

namespace WG {
class CLineEdit;
}

namespace TC {

class CQuotesAddInstrumentWidget : public WG::CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    CQuotesAddInstrumentWidget(int id, QWidget* parent);
    ~CQuotesAddInstrumentWidget() override;

    int id() const { return m_id; }
    // 32 accepts stock options and their funds, 1024 future options and futures; 0 everything.
    void setTradeType(nqservice::EVqTraderType type);
    nqservice::EVqTraderType tradeType() const { return m_tradeType; }
    void setStockCodeLineEditEmptyHintFontColor(const QString& colorKey);
    void setStockCodeLineEditEmptyHintFontKey(const QString& fontKey);
    void setStcokCodeLineEditTextFontKey(const QString& fontKey);

    // The stock key of a typed code, or empty when the exchange has none that fits the trade type.
    QString lookUp(const QString& text) const;
    // Looks the text up and delivers UE_ADD_INSTRUMENT when found; returns the key or empty.
    QString addInstrument(const QString& text);
    // Shows a code without looking it up (a panel that chose the code itself).
    void setCodeText(const QString& text);
    QString codeText() const;
    WG::CLineEdit* lineEdit() const { return m_edit; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;
    void themeChanged() override;

signals:
    void sigInstrumentAdded(const QString& key);

private:
    void applyLook();

    int m_id;
    nqservice::EVqTraderType m_tradeType = nqservice::VQ_TRADER_TYPE_NONE;
    WG::CLineEdit* m_edit;
    QString m_hintColorKey = QStringLiteral("clr_edit_placeholder");
    QString m_hintFontKey = QStringLiteral("fnt_default_normal_fix");
    QString m_textFontKey = QStringLiteral("fnt_default_normal_fix");
    QString m_appliedFontKey;
};

}  // namespace TC
