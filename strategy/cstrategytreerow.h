// What the two row widgets of the basket tree share: a fixed height of 26, an
// icon and a caption centred in height, laid out again on resize and on a
// theme change. A subclass adds its buttons and places them in layoutChildren.
#pragma once

#include "toolkit/cbasewidget.h"

class QResizeEvent;

namespace WG {
class CImageWidget;
class CSimpleTextWidget;
}  // namespace WG

namespace TC {

class CStrategyTreeRow : public WG::CBaseWidget {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 26;

    CStrategyTreeRow(const QString& objectName, const QString& imageKey, const QString& caption, int captionX,
                     QWidget* parent);
    ~CStrategyTreeRow() override;

    void themeChanged() override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    // Places icon and caption; `captionRight` is where the caption must end.
    void layoutRow(int captionRight);
    virtual void layoutChildren() = 0;
    // The y that centres a child of this height: (row height - child height - 1) / 2.
    int centredY(int childHeight) const;

    WG::CImageWidget* m_image;
    WG::CSimpleTextWidget* m_caption;

private:
    int m_captionX;
};

}  // namespace TC
