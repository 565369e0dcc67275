// A compact filled button for dialogs and tool strips, coloured by its type
// (neutral, critical red, safe green, primary accent). A click delivers
// UE_BUTTON_CLICKED with the button's id and the checked state in arg.
#pragma once

#include "toolkit/ceventwidgett.h"
#include "toolkit/toolkitenums.h"

#include <QAbstractButton>

namespace WG {

class CSmallNormalButton : public CEventWidgetT<QAbstractButton> {
    Q_OBJECT
public:
    CSmallNormalButton(int id, bool checkable, ENormalButtonType type, const QString& text, QWidget* parent);
    ~CSmallNormalButton() override;

    int id() const { return m_id; }
    void setButtonType(ENormalButtonType type);
    ENormalButtonType buttonType() const { return m_type; }
    void setTextFontKey(const QString& fontKey);
    QString textFontKey() const { return m_fontKey; }

    // Keys the current state paints with.
    virtual QString currentBackgroundKey() const;
    virtual QString currentTextColorKey() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }
    // Called for every click; delivers the event.
    virtual void onClicked(bool checked);

    bool m_hovered = false;

private:
    int m_id;
    ENormalButtonType m_type;
    QString m_fontKey = QStringLiteral("fnt_default_normal_fix");
};

}  // namespace WG
