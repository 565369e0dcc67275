// An image by resource key, scaled into the widget keeping its shape. A click
// delivers UE_BUTTON_CLICKED with the widget's id.
#pragma once

#include "toolkit/ceventwidgett.h"

namespace WG {

class CImageWidget : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    CImageWidget(int id, const QString& key, QWidget* parent);
    ~CImageWidget() override;

    int id() const { return m_id; }
    void setImageKey(const QString& key);
    QString imageKey() const { return m_key; }

    QSize sizeHint() const override;

signals:
    void sigClicked(int id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int m_id;
    QString m_key;
};

}  // namespace WG
