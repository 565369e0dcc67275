#include "toolkit/csimpletext.h"

#include "toolkit/cuiresource.h"

#include <QFontMetrics>

namespace WG {

QSize CSimpleText::getSize(const QString& text, const QString& fontKey)
{
    const QFontMetrics metrics(*CUiResource::get()->getFont(fontKey));
    return QSize(metrics.horizontalAdvance(text), metrics.height());
}

}  // namespace WG
