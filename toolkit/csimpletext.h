// Text measurement by font key, for widgets that size themselves to a text.
#pragma once

#include <QSize>
#include <QString>

namespace WG {

class CSimpleText {
public:
    // Width and height of one line of text in the font of the key (current theme).
    static QSize getSize(const QString& text, const QString& fontKey);
};

}  // namespace WG
