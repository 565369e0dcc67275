// Helpers of the widget tests: a parent that records the events its controls
// deliver, and pixel checks on grabbed pictures.
#pragma once

#include "toolkit/ceventwidgett.h"
#include "toolkit/cuiresource.h"

#include <QImage>
#include <QList>
#include <QString>

#include <cstdlib>

namespace widgettest {

struct RecordedEvent {
    int code = 0;
    int id = 0;
    int arg = 0;
    QString text;
};

// The deliverer above the controls under test: records and keeps every event.
class EventRecorder : public WG::CEventWidgetT<QWidget> {
public:
    explicit EventRecorder(QWidget* parent = nullptr) : WG::CEventWidgetT<QWidget>(parent) { resize(400, 300); }

    bool handleEvent(int code, int id, int arg, QString text, void*) override
    {
        events << RecordedEvent{code, id, arg, text};
        return true;
    }
    QList<RecordedEvent> ofCode(int code) const
    {
        QList<RecordedEvent> result;
        for (const RecordedEvent& event : events) {
            if (event.code == code) {
                result << event;
            }
        }
        return result;
    }

    QList<RecordedEvent> events;
};

inline QColor themeColor(const char* key) { return *WG::CUiResource::get()->getColor(QString::fromLatin1(key)); }

inline int colorDistance(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
}

// Whether some pixel of the area is within tolerance of the colour (text strokes are anti-aliased).
inline bool areaHasColor(const QImage& image, const QRect& area, const QColor& color, int tolerance = 24)
{
    const QRect bounded = area.intersected(image.rect());
    for (int y = bounded.top(); y <= bounded.bottom(); ++y) {
        for (int x = bounded.left(); x <= bounded.right(); ++x) {
            if (colorDistance(image.pixelColor(x, y), color) <= tolerance) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace widgettest
