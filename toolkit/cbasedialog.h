// The dialog base of the toolkit: a frameless themed dialog with its own title
// bar (title and close button, draggable) and the event channel. Events that a
// subclass doesn't know go on to the dialog's parent deliverer.
#pragma once

#include "toolkit/ceventwidgett.h"

class QVBoxLayout;

namespace WG {

class CPushButton;
class CSimpleTextWidget;

class CBaseDialog : public CEventWidgetT<QDialog> {
    Q_OBJECT
public:
    // Id of the title bar's close button.
    static constexpr int kCloseButtonID = -9001;

    explicit CBaseDialog(QWidget* parent, bool titleBar = true);
    ~CBaseDialog() override;

    void setTitle(const QString& title);
    QString title() const;
    // The area below the title bar; subclasses put their content here.
    QVBoxLayout* contentLayout() const { return m_content; }
    QWidget* titleBar() const { return m_titleBar; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;
    void themeChanged() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void applyStyle();

    QWidget* m_titleBar = nullptr;
    CSimpleTextWidget* m_title = nullptr;
    CPushButton* m_close = nullptr;
    QVBoxLayout* m_content = nullptr;
    QPoint m_dragOffset;
    bool m_dragging = false;
};

}  // namespace WG
