// A painted button: an image from a state grid, a text, and colours for the
// normal, hover, active and disabled states, all by resource key resolved at
// paint time. A click delivers UE_BUTTON_CLICKED with the button's id.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QAbstractButton>
#include <QString>

namespace WG {

// Background colour keys of a button's states; an empty key paints nothing.
struct CButtonColor {
    QString normal;
    QString hover;
    QString active;
    QString disabled;
    QString border;
};

class CPushButton : public CEventWidgetT<QAbstractButton> {
    Q_OBJECT
public:
    // imageKey: an image whose columns are the state frames (normal, hover,
    // active, disabled; imageColumns of them) and, when imageRows is 2, whose
    // second row is the checked look. width, height: a fixed size when > 0.
    // spacing: room between image and text.
    CPushButton(const QString& imageKey, int id, int imageColumns = 1, int imageRows = 1, int width = 0,
                int height = 0, int spacing = 4, QWidget* parent = nullptr);
    ~CPushButton() override;

    int id() const { return m_id; }
    void setImageKey(const QString& key);
    QString imageKey() const { return m_imageKey; }
    void setTextColorKey(const QString& normal, const QString& hover, const QString& active, const QString& disabled);
    // Text beside the image (true) or below it (false, the default).
    void setHorizontalText(bool horizontal);
    void setTextFontKey(const char* fontKey);
    void setButtonColor(const CButtonColor& color);
    const CButtonColor& buttonColor() const { return m_buttonColor; }

    // The keys the current state paints with; tests and subclasses read them.
    QString currentTextColorKey() const;
    QString currentBackgroundKey() const;
    bool isHovered() const { return m_hovered; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void sigClicked(int id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

private:
    int stateIndex() const;  // 0 normal, 1 hover, 2 active, 3 disabled

    int m_id;
    QString m_imageKey;
    int m_imageColumns;
    int m_imageRows;
    int m_fixedWidth;
    int m_fixedHeight;
    int m_spacing;
    bool m_horizontalText = false;
    bool m_hovered = false;
    QString m_fontKey = QStringLiteral("fnt_default_normal_fix");
    QString m_textKeys[4];
    CButtonColor m_buttonColor;
};

}  // namespace WG
